// Fetches a URL through the proxy in the settings of the system.
// Usage: system_proxy URL

#include <iostream>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Fetches `url` through the system's proxy for its protocol; directly if there is none.
Response getThroughSystemProxy(Url const& url) {
    auto const client = addSystemProxyAdapter(createHttpClient(HttpClientType::Cpr));
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return client->get({url}, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: system_proxy URL\n";
        return 2;
    }
    return report(getThroughSystemProxy(Url(argv[1])));
}
