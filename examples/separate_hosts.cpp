// Fetches URLs one after the other. Cookies are sent only to the host that set them.
// Usage: separate_hosts URL...

#include <iostream>
#include <memory>

#include <Networking/AddAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/ExactCookiesAdapter.h"
#include "examples/HostCookieJar.h"
#include "examples/Printing.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::cerr << "usage: separate_hosts URL...\n";
        return 2;
    }
    std::shared_ptr<IHttpClient> const direct = createHttpClient(HttpClientType::Cpr);
    auto const client = addCookieJarAdapter(std::make_shared<ExactCookiesAdapter>(direct),
                                            std::make_shared<HostCookieJar>());
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto status = 0;
    for (auto i = 1; i < argc; ++i) {
        status |= report(client->get({Url(argv[i])}, options));
    }
    return status;
}
