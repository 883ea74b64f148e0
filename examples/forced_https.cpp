// Fetches a URL over HTTPS, whatever its protocol.
// Usage: forced_https URL

#include <iostream>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: forced_https URL\n";
        return 2;
    }
    // [snippet]
    auto const client = addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                ForceProtocolSettings::Https);
    Request request;
    request.url = Url(argv[1]);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = client->get(request, options);
    // [/snippet]
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << response.error.message << '\n';
        return 1;
    }
    std::cout << response.statusLine << ", " << response.body.size() << " bytes\n";
}
