// Fetches a URL with growing patience: two attempts, then a last one from a mirror over https.
// Usage: retry_with_fallback URL

#include <cstdint>
#include <iostream>
#include <memory>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: retry_with_fallback URL\n";
        return 2;
    }
    constexpr std::int64_t SECOND = 1'000'000;  // Timeouts are microseconds.
    std::shared_ptr<IHttpClient> const direct = createHttpClient(HttpClientType::Cpr);
    // Any client can serve an attempt: here one that goes out over https whatever the URL says.
    std::shared_ptr<IHttpClient> const fallback =
        addForceProtocolAdapter(direct, ForceProtocolSettings::Https);
    auto const client = addRetriesAdapter(
        direct, {{1 * SECOND, nullptr}, {3 * SECOND, nullptr}, {10 * SECOND, fallback}});

    Request request;
    request.url = Url(argv[1]);
    Options options;
    // Each attempt starts from the beginning, so collect the body in the response, not in a sink.
    auto const response = client->get(request, options);
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << response.error.message << '\n';
        return 1;
    }
    std::cout << response.statusLine << ", " << response.body.size() << " bytes\n";
}
