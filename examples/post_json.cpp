// Posts a note as JSON and prints the server's response.
// Usage: post_json URL

#include <iostream>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: post_json URL\n";
        return 2;
    }
    // [snippet]
    Request request;
    request.url = Url(argv[1]);
    request.headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const client = createHttpClient(HttpClientType::Cpr);
    auto const response = client->post(request, R"({"title":"Tea","done":false})", options);

    if (response.error.code != ErrorCode::Ok) {
        std::cerr << "not sent: " << response.error.message << '\n';
        return 1;
    }
    if (response.statusCode < 200 || response.statusCode > 299) {
        std::cerr << "refused: " << response.statusLine << '\n';
        return 1;
    }
    std::cout << response.body << '\n';
    // [/snippet]
}
