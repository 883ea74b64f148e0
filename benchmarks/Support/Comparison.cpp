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

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void compare(benchmark::State& state, std::vector<Contestant> const& contestants) {
    std::vector<std::vector<double>> seconds(contestants.size());
    for (std::size_t turn = 0; state.KeepRunning(); ++turn) {
        auto const start = std::chrono::steady_clock::now();
        for (std::size_t i = 0; i < contestants.size(); ++i) {
            // Another one begins each turn, so that none always follows the same.
            auto const next = (turn + i) % contestants.size();
            seconds[next].push_back(contestants[next].measure());
        }
        state.SetIterationTime(secondsSince(start));
    }
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        auto const& name = contestants[i].name;
        state.counters[name] = median(seconds[i]);
        std::vector<double> ratios;
        std::transform(seconds[0].begin(), seconds[0].end(), seconds[i].begin(),
                       std::back_inserter(ratios), std::divides<>());
        state.counters[contestants[0].name + "/" + name] = median(std::move(ratios));
    }
}

}  // namespace

void registerComparison(std::string const& name, std::vector<Contestant> const& contestants,
                        double minTime) {
    auto const run = [contestants](benchmark::State& state) { compare(state, contestants); };
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): Google Benchmark owns it.
    auto* const comparison = benchmark::RegisterBenchmark(name.c_str(), run);
    comparison->UseManualTime();
    if (minTime > 0) {
        comparison->MinTime(minTime);
    }
}

double timeOf(int count, std::function<void()> const& operation) {
    auto const start = std::chrono::steady_clock::now();
    for (auto i = 0; i < count; ++i) {
        operation();
    }
    return secondsSince(start) / count;
}

double timeOnThreads(int threads, int count,
                     std::function<void(int thread, int i)> const& operation) {
    std::vector<std::thread> running;
    running.reserve(static_cast<std::size_t>(threads));
    auto const start = std::chrono::steady_clock::now();
    for (auto thread = 0; thread < threads; ++thread) {
        running.emplace_back([=, &operation] {
            for (auto i = 0; i < count; ++i) {
                operation(thread, i);
            }
        });
    }
    for (auto& thread : running) {
        thread.join();
    }
    return secondsSince(start) / (threads * count);
}

}  // namespace Ostrel::Networking::Benchmarks
