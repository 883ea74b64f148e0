// Fetches a URL and logs the call.
// Usage: log_calls URL

#include <chrono>
#include <iostream>
#include <memory>
#include <string>

#include <Networking/Adapters/ClientAdapter.h>
#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Logs the URL, the status, the error code and the duration of every call.
class LoggingAdapter final : public ClientAdapter {
public:
    explicit LoggingAdapter(std::shared_ptr<IHttpClient> const& client) : ClientAdapter(client) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        auto const start = std::chrono::steady_clock::now();
        auto response = operation(client(), request, options);
        auto const elapsed = std::chrono::steady_clock::now() - start;
        // One string, so that the lines of several threads do not mix.
        std::clog << loggable(request.url) + ": status " + std::to_string(response.statusCode) +
                         ", error " + std::to_string(static_cast<int>(response.error.code)) + ", " +
                         std::to_string(elapsed / std::chrono::milliseconds(1)) + " ms\n";
        return response;
    }

    /// Omits user info and query, which may be secret. Ends at the first character that could start
    /// a parameter or a new line, because `Url` allows them in a host and in a path.
    static std::string loggable(Url url) {
        static std::string const plain =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/%";
        url.setUserInfo({});
        url.setHost(url.host().substr(url.host().rfind('@') + 1));
        auto const text = url.toString();
        return text.substr(0, text.find_first_not_of(plain));
    }
};
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: log_calls URL\n";
        return 2;
    }
    // [snippet]
    LoggingAdapter client(createHttpClient(HttpClientType::Cpr));
    std::cout << client.get({Url(argv[1])}, {}).body;
    // [/snippet]
}
