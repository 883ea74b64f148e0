// Fetches a URL through the proxy in the settings of the system.
// Usage: system_proxy URL

#include <iostream>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: system_proxy URL\n";
        return 2;
    }
    // [snippet]
    auto const client = addSystemProxyAdapter(createHttpClient(HttpClientType::Cpr));
    Request request;
    request.url = Url(argv[1]);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = client->get(request, options);

    if (response.error.code == ErrorCode::ProxyResolutionFailure) {
        std::cerr << "check the proxy in the network settings: " << response.error.message << '\n';
        return 1;
    }
    // [/snippet]
    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "failed: " << response.error.message << '\n';
        return 1;
    }
    std::cout << response.statusLine << ", " << response.body.size() << " bytes\n";
}
