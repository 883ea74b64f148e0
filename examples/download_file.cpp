// Downloads a file, or continues a download that was cut short. Ctrl-C cancels it.
// Usage: download_file URL FILE

#include <csignal>
#include <iostream>

#include <Networking/CreateHttpClient.h>
#include <Networking/Types.h>

#include "examples/Download.h"
#include "examples/Explanation.h"

using namespace Recipes;

namespace {

DownloadJob JOB;

// [snippet]
Options downloadOptions() {
    Options options;
    options.timeout = 20'000'000;  // microseconds
    options.lowSpeedLimit = 1;     // Once connected, 30 seconds below 1 byte/s end the call.
    options.lowSpeedTime = 30;
    options.followRedirects = true;
    options.maxRedirects = 10;
    return options;
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: download_file URL FILE\n";
        return 2;
    }
    std::signal(SIGINT, [](int) { JOB.isCancelled = true; });
    auto const client = createHttpClient(HttpClientType::Cpr);
    if (!download(*client, {Url(argv[1])}, downloadOptions(), argv[2], JOB)) {
        std::cerr << explanationOf(JOB.response) << '\n';
        return 1;
    }
    std::cout << JOB.received << " bytes\n";
}
