// Fetches a URL in up to four attempts, with growing pauses between them.
// Usage: try_again URL

#include <chrono>
#include <iostream>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"
#include "examples/TryAgainAdapter.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: try_again URL\n";
        return 2;
    }
    using namespace std::chrono_literals;
    TryAgainAdapter client(createHttpClient(HttpClientType::Cpr), 4, 500ms, 30s);
    Options options;
    options.timeout = 10'000'000;  // microseconds, for each attempt
    return report(client.get({Url(argv[1])}, options));
}
