// Tests a function that sends a request, without a server.
// Usage: fake_client

#include <iostream>
#include <string>

#include <Networking/IHttpClient.h>

using namespace Ostrel::Networking;

namespace {

/// The function under test. It takes the client as an argument.
std::string newestVersion(IHttpClient& client) {
    Request request;
    request.url = Url("https://example.com/newest");
    auto const response = client.get(request, {});
    return response.statusCode == 200 ? response.body : "unknown";
}

// [snippet]
class FakeClient final : public IHttpClient {
public:
    Response answer;
    Request asked;

    Response get(Request const& request, Options const&) override { return reply(request); }
    Response head(Request const& request, Options const&) override { return reply(request); }
    Response post(Request const& request, std::string const&, Options const&) override {
        return reply(request);
    }
    Response post(Request const& request, MultiPart const&, Options const&) override {
        return reply(request);
    }

private:
    Response reply(Request const& request) {
        asked = request;
        return answer;
    }
};
// [/snippet]

}  // namespace

int main() {
    // [snippet]
    FakeClient client;
    auto const before = newestVersion(client);  // The answer is still `NotPerformed`.
    client.answer.statusCode = 200;
    client.answer.body = "2.1";
    auto const after = newestVersion(client);

    auto const isPassed = before == "unknown" && after == "2.1" &&
                          client.asked.url.toString() == "https://example.com/newest";
    // [/snippet]
    std::cout << (isPassed ? "passed\n" : "failed\n");
    return isPassed ? 0 : 1;
}
