// Fetches a URL through the proxy in the settings of the system, unless the host is to be reached
// directly. Usage: bypass_proxy URL HOST...

#include <iostream>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"
#include "examples/SelectiveProxyProvider.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::cerr << "usage: bypass_proxy URL HOST...\n";
        return 2;
    }
    auto const client =
        addSelectiveProxy(createHttpClient(HttpClientType::Cpr), {argv + 2, argv + argc});
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return report(client->get({Url(argv[1])}, options));
}
