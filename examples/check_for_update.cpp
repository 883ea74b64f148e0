// Checks whether a resource is newer than a date in the format of the Last-Modified header.
// Usage: check_for_update URL "Sun, 22 Nov 2026 10:00:00 GMT"

#include <ctime>
#include <iostream>
#include <string>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

// [snippet]
// Reads a date as `getLastModified` does: the time zone of the process shifts both by the same
// time, so it does not affect the comparison.
std::time_t timeOf(std::string const& lastModified) {
    Response response;
    response.error.code = ErrorCode::Ok;
    response.headers["Last-Modified"] = lastModified;
    return response.getLastModified();
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: check_for_update URL DATE\n";
        return 2;
    }
    std::string const installed = argv[2];
    // [snippet]
    Request request;
    request.url = Url(argv[1]);
    Options options;
    options.timeout = 10'000'000;  // microseconds
    auto const response = createHttpClient(HttpClientType::Cpr)->head(request, options);
    if (response.statusCode != 200 || response.getLastModified() <= 0) {
        std::cerr << "cannot tell whether there is a newer version\n";
        return 1;
    }
    auto const isNewer = response.getLastModified() > timeOf(installed);
    std::cout << (isNewer ? "there is a newer version\n" : "up to date\n");
    // [/snippet]
}
