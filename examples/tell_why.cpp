// Fetches a URL, and says in words for a user why that failed.
// Usage: tell_why URL

#include <iostream>

#include <Networking/CreateHttpClient.h>

#include "examples/Explanation.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: tell_why URL\n";
        return 2;
    }
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const client = createHttpClient(HttpClientType::Cpr);
    auto const response = client->get({Url(argv[1])}, options);
    if (auto const explanation = explanationOf(response); !explanation.empty()) {
        std::cerr << explanation << '\n';
        return 1;
    }
    std::cout << response.body << '\n';
}
