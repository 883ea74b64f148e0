// Sends user input as a query parameter.
// Usage: search URL TEXT

#include <iostream>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: search URL TEXT\n";
        return 2;
    }
    // [snippet]
    Request request;
    request.url = Url(argv[1]);
    request.url.addParameter("q", argv[2]);  // "1/2 + 50%" is sent as "?q=1%2F2%20%2B%2050%25".
    // [/snippet]
    std::cout << createHttpClient(HttpClientType::Cpr)->get(request, {}).body;
}
