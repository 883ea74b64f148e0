// Fetches a URL and logs the call.
// Usage: log_calls URL

#include <chrono>
#include <iostream>
#include <memory>
#include <string>

#include <Networking/Adapters/ClientAdapter.h>
#include <Networking/CreateHttpClient.h>

#include "examples/Printing.h"

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Logs host and path, the status, the error code and the duration of every call.
class LoggingAdapter final : public ClientAdapter {
public:
    explicit LoggingAdapter(std::shared_ptr<IHttpClient> const& client) : ClientAdapter(client) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        auto const start = std::chrono::steady_clock::now();
        auto response = operation(client(), request, options);
        auto const elapsed = std::chrono::steady_clock::now() - start;
        auto const host = request.url.host();  // With user info, if the rest is a single character.
        auto const target = host.substr(host.rfind('@') + 1) + request.url.path();
        // One string, so that the lines of several threads do not mix. Ends the target where a
        // parameter or another line could start, because `Url` allows these characters.
        std::clog << target.substr(0, target.find_first_of("?;\r\n")) + ": status " +
                         std::to_string(response.statusCode) + ", error " +
                         std::to_string(static_cast<int>(response.error.code)) + ", " +
                         std::to_string(elapsed / std::chrono::milliseconds(1)) + " ms\n";
        return response;
    }
};
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: log_calls URL\n";
        return 2;
    }
    Options options;
    options.timeout = 10'000'000;  // microseconds
    LoggingAdapter client(createHttpClient(HttpClientType::Cpr));
    return report(client.get({Url(argv[1])}, options));
}
