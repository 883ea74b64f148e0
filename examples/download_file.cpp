// Downloads a URL into a file that appears only when it is complete. Ctrl-C cancels the download.
// Usage: download_file URL FILE

#include <atomic>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <Networking/CreateHttpClient.h>

using namespace Ostrel::Networking;

namespace {

std::atomic<bool> CANCELLED{false};

// [snippet]
bool download(Url const& url, std::filesystem::path const& target) {
    auto partial = target;
    partial += ".part";
    std::ofstream file(partial, std::ios::binary);
    Options options;
    // No limit on the duration, but once connected, 30 seconds below 1 byte/s end the call.
    options.lowSpeedLimit = 1;
    options.lowSpeedTime = 30;
    options.progressInterval = 200'000;  // microseconds
    options.onProgress = [](std::int64_t now, std::int64_t total) {
        std::cerr << now * 100 / total << " %\n";
    };
    options.onData = [&file](std::string const& chunk) { file << chunk; };
    // Any thread may set the flag. A full disk also ends the transfer.
    options.isCancelled = [&file] { return CANCELLED || !file; };

    auto const response = createHttpClient(HttpClientType::Cpr)->get({url}, options);
    file.close();
    if (!file || response.error.code != ErrorCode::Ok || response.statusCode != 200) {
        std::filesystem::remove(partial);
        return false;
    }
    std::filesystem::rename(partial, target);  // Replaces an older file in one step.
    return true;
}
// [/snippet]

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        std::cerr << "usage: download_file URL FILE\n";
        return 2;
    }
    std::signal(SIGINT, [](int) { CANCELLED = true; });
    if (!download(Url(argv[1]), argv[2])) {
        std::cerr << (CANCELLED ? "cancelled\n" : "failed\n");
        return 1;
    }
}
