// Fetches a link, such as one from an e-mail, exactly as it was written.
// Usage: open_link LINK

#include <iostream>

#include <Networking/CreateHttpClient.h>

#include "examples/LinkAsGiven.h"
#include "examples/Printing.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: open_link LINK\n";
        return 2;
    }
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return report(createHttpClient(HttpClientType::Cpr)->get({linkAsGiven(argv[1])}, options));
}
