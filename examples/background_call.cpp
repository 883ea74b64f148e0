// Fetches a URL on a thread of its own, and waits for it at most SECONDS.
// Usage: background_call URL SECONDS

#include <chrono>
#include <cstdlib>
#include <future>
#include <iostream>
#include <memory>
#include <string>

#include <Networking/CreateHttpClient.h>

#include "examples/BackgroundCall.h"
#include "examples/Printing.h"

using namespace Recipes;

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: background_call URL SECONDS\n";
        return 2;
    }
    std::shared_ptr<IHttpClient> const client = createHttpClient(HttpClientType::Cpr);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    std::promise<Response> delivered;
    auto future = delivered.get_future();
    auto status = 1;
    {
        BackgroundCall const call(
            [client, url = Url(argv[1])](Options const& with) { return client->get({url}, with); },
            options, [&](Response const& response) { delivered.set_value(response); });
        // The event loop of an application.
        if (future.wait_for(std::chrono::seconds(std::stoi(argv[2]))) ==
            std::future_status::ready) {
            status = report(future.get());
        }
    }
    // No call may be running when `main` returns.
    if (!BackgroundCall::waitForAll(std::chrono::seconds(2))) {
        std::_Exit(status);
    }
    return status;
}
