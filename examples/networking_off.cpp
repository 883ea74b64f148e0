// Fetches a URL, unless networking is switched off.
// Usage: networking_off URL [--offline]

#include <iostream>
#include <string>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc < 2 || argc > 3 || (argc == 3 && argv[2] != std::string("--offline"))) {
        std::cerr << "usage: networking_off URL [--offline]\n";
        return 2;
    }
    auto const isOffline = argc == 3;
    // [snippet]
    // The only line that depends on the setting: all other code uses an `IHttpClient`.
    auto const client = createHttpClient(isOffline ? HttpClientType::Stub : HttpClientType::Cpr);

    Request request;
    request.url = Url(argv[1]);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = client->get(request, options);
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << response.error.message << '\n';
        return 1;
    }
    // The stub answers with `ErrorCode::Ok` and status 0, so check for the status that you need.
    std::cout << (response.statusCode == 200 ? response.body : "nothing new") << '\n';
    // [/snippet]
}
