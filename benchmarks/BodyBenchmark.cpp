#include <cstddef>
#include <sstream>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Process.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

constexpr int LARGEST_MIB = 192;

struct Figures {
    double seconds = 0;
    double peakMemory = 0;
};

/// Every process moves as many bytes as the largest body has.
Figures transfer(std::string const& how, std::string const& server, int mib) {
    auto const size = std::to_string(std::size_t{1024} * 1024 * static_cast<std::size_t>(mib));
    std::istringstream output(
        outputOf({BODY_TRANSFER, how, server, size, std::to_string(LARGEST_MIB / mib)}));
    Figures figures;
    output >> figures.seconds >> figures.peakMemory;
    return figures;
}

void report(benchmark::State& state, std::string const& name, Figures const& figures) {
    constexpr double MIB = 1024.0 * 1024;
    state.counters[name + " MiB/s"] = LARGEST_MIB / figures.seconds;
    state.counters[name + " peak MiB"] = figures.peakMemory / MIB;
}

/// Unlike the other comparisons this one has two results for each contestant.
void compareBodies(benchmark::State& state, std::string const& mode, std::string const& server,
                   int mib) {
    while (state.KeepRunning()) {
        auto const library = transfer(mode + "/library", server, mib);
        auto const cpr = transfer(mode + "/cpr", server, mib);
        state.SetIterationTime(library.seconds + cpr.seconds);
        report(state, "library", library);
        report(state, "cpr", cpr);
        state.counters["throughput"] = cpr.seconds / library.seconds;
        state.counters["peak"] = library.peakMemory / cpr.peakMemory;
    }
}

void registerBodies(std::string const& mode, std::string const& server, int mib) {
    auto const run = [=](benchmark::State& state) { compareBodies(state, mode, server, mib); };
    benchmark::RegisterBenchmark(("Body/" + mode + "/" + std::to_string(mib)).c_str(), run)
        ->UseManualTime()
        ->Iterations(1);
}

}  // namespace

void registerBodyBenchmarks(std::string const& server) {
    for (auto const mib : {1, 64, LARGEST_MIB}) {
        registerBodies("collected", server, mib);
        registerBodies("streamed", server, mib);
    }
}

}  // namespace Ostrel::Networking::Benchmarks
