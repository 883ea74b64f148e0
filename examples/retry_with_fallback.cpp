// Fetches a URL in at most three attempts, with growing timeouts. The third goes to a mirror.
// Usage: retry_with_fallback URL MIRROR

#include <cstdint>
#include <iostream>
#include <memory>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Sends every request to the server of another URL.
class MirrorAdapter final : public ClientAdapter {
public:
    MirrorAdapter(std::shared_ptr<IHttpClient> const& client, Url const& mirror)
        : ClientAdapter(client), mirror_(mirror) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        auto sent = request;
        sent.url.setProtocol(mirror_.protocol());
        sent.url.setHost(mirror_.host());
        sent.url.setPort(mirror_.port());
        return operation(client(), sent, options);
    }

    Url mirror_;
};
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: retry_with_fallback URL MIRROR\n";
        return 2;
    }
    // [snippet]
    constexpr std::int64_t SECOND = 1'000'000;  // Timeouts are in microseconds.
    std::shared_ptr<IHttpClient> const direct = createHttpClient(HttpClientType::Cpr);
    auto const mirrored = std::make_shared<MirrorAdapter>(direct, Url(argv[2]));
    auto const client =
        addRetriesAdapter(direct, {{1 * SECOND}, {3 * SECOND}, {10 * SECOND, mirrored}});
    Request request;
    request.url = Url(argv[1]);
    // Without `onData`, which would also receive pieces of failed attempts.
    auto const response = client->get(request, {});
    // [/snippet]
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << response.error.message << '\n';
        return 1;
    }
    std::cout << response.statusLine << ", " << response.body.size() << " bytes\n";
}
