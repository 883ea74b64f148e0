// Fetches a URL over HTTPS, whatever its protocol.
// Usage: forced_https URL

#include <iostream>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Fetches `url` over HTTPS, whatever protocol it has. Redirects are not followed.
Response getOverHttps(Url const& url) {
    auto const client = addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                ForceProtocolSettings::Https);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return client->get({url}, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: forced_https URL\n";
        return 2;
    }
    return report(getOverHttps(Url(argv[1])));
}
