// Fetches a URL in at most three attempts, with growing time limits. The third goes to a mirror.
// Usage: retry_with_fallback URL MIRROR

#include <iostream>

#include <Networking/CreateHttpClient.h>

#include "examples/MirrorAdapter.h"
#include "examples/Printing.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: retry_with_fallback URL MIRROR\n";
        return 2;
    }
    auto const client = addMirror(createHttpClient(HttpClientType::Cpr), Url(argv[2]), 1'000'000);
    return report(client->get({Url(argv[1])}, {}));
}
