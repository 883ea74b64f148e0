// Fetches a URL with a bearer token, which does not follow a redirect to another host.
// Usage: redirects URL TOKEN

#include <iostream>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"
#include "examples/RedirectingClient.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: redirects URL TOKEN\n";
        return 2;
    }
    RedirectingClient client(createHttpClient(HttpClientType::Cpr));
    Request request{linkAsGiven(argv[1])};
    request.headers["Authorization"] = std::string("Bearer ") + argv[2];
    Options options;
    options.timeout = 10'000'000;  // microseconds, for each of the calls
    return report(client.get(request, options));
}
