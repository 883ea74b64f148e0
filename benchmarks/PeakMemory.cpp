// Fetches a body and prints the peak memory of the process in bytes.

#include <cstdio>
#include <fstream>
#include <map>
#include <string>

#include <sys/resource.h>

#include "benchmarks/Support/Fetch.h"

namespace {

using namespace Ostrel::Networking::Benchmarks;

/// Prefers the record of Linux, where `getrusage` also counts the process that started this one.
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
    std::map<std::string, Fetch> const fetches{{"collectByLibrary", collectByLibrary},
                                               {"collectByCpr", collectByCpr},
                                               {"streamByLibrary", streamByLibrary},
                                               {"streamByCpr", streamByCpr}};
    if (argc != 3 || fetches.count(argv[1]) == 0 || fetches.at(argv[1])(argv[2]) == 0) {
        std::fputs("usage: PeakMemory collectByLibrary|collectByCpr|... URL\n", stderr);
        return 2;
    }
    std::printf("%lld\n", peakMemory());
}
