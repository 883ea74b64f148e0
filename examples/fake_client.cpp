// Tests a function that uses the network, without a network.
// Usage: fake_client

#include <iostream>
#include <string>

#include <Networking/IHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// The function under test. It takes the client as an argument.
std::string newestVersion(IHttpClient& client) {
    auto const response = client.get({Url("https://example.com/newest")}, {});
    auto const isKnown = response.error.code == ErrorCode::Ok && response.statusCode == 200;
    return isKnown ? response.body : "unknown";
}

/// Answers every call with `answer`, and keeps the request.
class FakeClient final : public IHttpClient {
public:
    Response answer;  // Until it is set, calls fail with `ErrorCode::NotPerformed`.
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

bool isNewestVersionRight() {
    FakeClient client;
    auto const whenOffline = newestVersion(client);
    client.answer.error.code = ErrorCode::Ok;
    client.answer.statusCode = 200;
    client.answer.body = "2.1";
    auto const whenOnline = newestVersion(client);
    return whenOffline == "unknown" && whenOnline == "2.1" &&
           client.asked.url.toString() == "https://example.com/newest";
}
// [/snippet]

}  // namespace

int main() {
    auto const isPassed = isNewestVersionRight();
    std::cout << (isPassed ? "passed\n" : "failed\n");
    return isPassed ? 0 : 1;
}
