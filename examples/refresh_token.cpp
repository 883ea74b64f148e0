// Fetches a URL with a bearer token. If the server refuses the token, gets a new one from another
// URL. Usage: refresh_token URL TOKEN REFRESH_URL

#include <iostream>
#include <memory>

#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"
#include "examples/TokenAdapter.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 4) {
        std::cerr << "usage: refresh_token URL TOKEN REFRESH_URL\n";
        return 2;
    }
    std::shared_ptr<IHttpClient> const client = createHttpClient(HttpClientType::Cpr);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const refresh = [client, options, url = Url(argv[3])] {
        auto const response = client->post({url}, "", options);
        auto const isRefreshed = response.error.code == ErrorCode::Ok && response.statusCode == 200;
        return isRefreshed ? response.body : "";
    };
    Url const url(argv[1]);
    return report(TokenAdapter(client, url, argv[2], refresh).get({url}, options));
}
