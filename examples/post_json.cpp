// Posts a note as JSON and prints the server's response.
// Usage: post_json URL JSON

#include <iostream>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Sends the bytes of `json` unchanged.
Response postJson(IHttpClient& client, Url const& url, std::string const& json) {
    Request request{url};
    request.headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return client.post(request, json, options);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: post_json URL JSON\n";
        return 2;
    }
    return report(postJson(*createHttpClient(HttpClientType::Cpr), Url(argv[1]), argv[2]));
}
