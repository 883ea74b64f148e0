// Sends user input as a query parameter.
// Usage: search URL TEXT

#include <iostream>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Asks for `text`, whatever characters it consists of.
Response search(IHttpClient& client, Url url, std::string const& text) {
    url.addParameter("q", text);  // "1/2 + 50%" is sent as "?q=1%2F2%20%2B%2050%25".
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return client.get({url}, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: search URL TEXT\n";
        return 2;
    }
    return report(search(*createHttpClient(HttpClientType::Cpr), Url(argv[1]), argv[2]));
}
