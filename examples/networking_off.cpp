// Fetches a URL, unless networking is switched off.
// Usage: networking_off URL [--offline]

#include <iostream>
#include <memory>
#include <string>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// The only function that knows the setting: all other code uses an `IHttpClient`.
std::unique_ptr<IHttpClient> createClient(bool isOffline) {
    return createHttpClient(isOffline ? HttpClientType::Stub : HttpClientType::Cpr);
}

/// Returns the news at `url`, if there are any.
std::string news(IHttpClient& client, Url const& url) {
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = client.get({url}, options);
    // The stub answers with `ErrorCode::Ok` and status 0, so look at both.
    auto const isFetched = response.error.code == ErrorCode::Ok && response.statusCode == 200;
    return isFetched ? response.body : "nothing new";
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 2 || argc > 3 || (argc == 3 && argv[2] != std::string("--offline"))) {
        std::cerr << "usage: networking_off URL [--offline]\n";
        return 2;
    }
    auto const client = createClient(argc == 3);
    std::cout << news(*client, Url(argv[1])) << '\n';
}
