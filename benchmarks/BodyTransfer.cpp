// Fetches a body a number of times, with one client in one way, and prints the seconds that the
// calls took together and the peak memory of the process in bytes.

#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

#include <sys/resource.h>

#include "Networking/CreateHttpClient.h"
#include "benchmarks/Support/Peers.h"

namespace {

using namespace Ostrel::Networking;

std::size_t collectByLibrary(std::string const& url) {
    auto const client = createHttpClient(HttpClientType::Cpr);
    return client->get(Benchmarks::requestFor(url), Benchmarks::standardOptions()).body.size();
}

std::size_t streamByLibrary(std::string const& url) {
    std::size_t size = 0;
    auto options = Benchmarks::standardOptions();
    options.onData = [&size](std::string const& piece) { size += piece.size(); };
    auto const client = createHttpClient(HttpClientType::Cpr);
    auto const response = client->get(Benchmarks::requestFor(url), options);
    return response.error.code == ErrorCode::Ok ? size : 0;
}

std::function<std::size_t(std::string const&)> transferOf(std::string const& name) {
    if (name == "collected/library") {
        return collectByLibrary;
    }
    if (name == "streamed/library") {
        return streamByLibrary;
    }
    return name == "collected/cpr" ? Benchmarks::collectByCpr : Benchmarks::streamByCpr;
}

/// On Linux `getrusage` starts with the peak of the process that ran this one, so the system's
/// other record goes first.
long long peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:" && status >> word) {
            return std::stoll(word) * 1024;
        }
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 5) {
        std::cerr << "usage: BodyTransfer collected|streamed/library|cpr URL SIZE CALLS\n";
        return 2;
    }
    auto const transfer = transferOf(argv[1]);
    std::string const base = argv[2];
    auto const size = std::stoul(argv[3]);
    // The first call of a process initialises libcurl and its TLS library.
    if (transfer(base + "1") != 1) {
        throw std::runtime_error("No answer from " + base);
    }
    auto const start = std::chrono::steady_clock::now();
    for (auto calls = std::stoi(argv[4]); calls > 0; --calls) {
        if (transfer(base + argv[3]) != size) {
            throw std::runtime_error("A body is incomplete");
        }
    }
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    std::printf("%.9f %lld\n", seconds.count(), peakMemory());
}
