// Fetches a URL with the cookies of earlier runs, which are kept in a file.
// Usage: stored_cookies URL FILE

#include <iostream>
#include <memory>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/ExactCookiesAdapter.h"
#include "examples/FileCookieJar.h"
#include "examples/Printing.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: stored_cookies URL FILE\n";
        return 2;
    }
    std::shared_ptr<IHttpClient> const client = createHttpClient(HttpClientType::Cpr);
    auto const session = addCookieJarAdapter(std::make_shared<ExactCookiesAdapter>(client),
                                             std::make_shared<FileCookieJar>(argv[2]));
    Options options;
    options.timeout = 10'000'000;  // microseconds
    return report(session->get({Url(argv[1])}, options));
}
