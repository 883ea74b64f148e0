#include "benchmarks/Support/Comparison.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <iterator>
#include <thread>
#include <utility>

#include <benchmark/benchmark.h>

namespace Ostrel::Networking::Benchmarks {

namespace {

double median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void compare(benchmark::State& state, std::vector<Contestant> const& contestants) {
    std::vector<std::vector<double>> figures(contestants.size());
    for (std::size_t turn = 0; state.KeepRunning(); ++turn) {
        state.SetIterationTime(timeOf(1, [&] {
            for (std::size_t i = 0; i < contestants.size(); ++i) {
                // Each turn starts with another contestant, so that the order varies.
                auto const next = (turn + i) % contestants.size();
                figures[next].push_back(contestants[next].measure());
            }
        }));
    }
    auto const& first = contestants.front();
    state.counters[first.name] = median(figures.front());
    for (std::size_t i = 1; i < contestants.size(); ++i) {
        auto const& name = contestants[i].name;
        state.counters[name] = median(figures[i]);
        std::vector<double> ratios;
        std::transform(figures[0].begin(), figures[0].end(), figures[i].begin(),
                       std::back_inserter(ratios), std::divides<>());
        state.counters[first.name + "/" + name] = median(std::move(ratios));
    }
}

}  // namespace

void registerComparison(std::string const& name, std::vector<Contestant> const& contestants) {
    auto const run = [contestants](benchmark::State& state) { compare(state, contestants); };
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): Google Benchmark owns it.
    benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
}

double timeOf(int count, std::function<void()> const& operation, int threads) {
    auto const repeat = [count, &operation] {
        for (auto i = 0; i < count; ++i) {
            operation();
        }
    };
    std::vector<std::thread> others;
    auto const start = std::chrono::steady_clock::now();
    for (auto thread = 1; thread < threads; ++thread) {
        others.emplace_back(repeat);
    }
    repeat();
    for (auto& other : others) {
        other.join();
    }
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    return seconds.count() / (threads * count);
}

}  // namespace Ostrel::Networking::Benchmarks
