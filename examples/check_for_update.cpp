// Checks whether a resource is newer than a date in the format of the Last-Modified header.
// Usage: check_for_update URL "Sun, 22 Nov 2026 10:00:00 GMT"

#include <ctime>
#include <iostream>
#include <optional>
#include <string>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
/// Reads a date as `getLastModified` does: the time zone of the process shifts both by the same
/// time, so it does not affect the comparison.
std::time_t timeOf(std::string const& lastModified) {
    Response response;
    response.error.code = ErrorCode::Ok;
    response.headers["Last-Modified"] = lastModified;
    return response.getLastModified();
}

/// Whether the file at `url` is newer than the installed one, whose "Last-Modified" is given;
/// nothing if the server does not tell.
std::optional<bool> isNewer(IHttpClient& client, Url const& url, std::string const& installed) {
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = client.head({url}, options);
    // Without a date, or after a failure, `getLastModified` returns 0.
    if (response.statusCode != 200 || response.getLastModified() <= 0) {
        return std::nullopt;
    }
    return response.getLastModified() > timeOf(installed);
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: check_for_update URL DATE\n";
        return 2;
    }
    auto const found = isNewer(*createHttpClient(HttpClientType::Cpr), Url(argv[1]), argv[2]);
    if (!found) {
        std::cerr << "cannot tell whether there is a newer version\n";
        return 1;
    }
    std::cout << (*found ? "there is a newer version\n" : "up to date\n");
}
