#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Ostrel::Networking::Benchmarks {

/// One side of a comparison.
struct Contestant {
    std::string name;
    /// Does the work once and gives the time that it took for one operation, in seconds.
    std::function<double()> measure;
};

/// Registers a benchmark in which the contestants take turns, for milliseconds each, so that a
/// machine that is now fast and now slow is the same to all. A repetition gives as counters the
/// time of each contestant under its name, in seconds, and the ratio of the first to each under
/// "first/other": medians over the turns. A repetition takes `minTime` seconds at least; 0 leaves
/// that to the command line.
void registerComparison(std::string const& name, std::vector<Contestant> const& contestants,
                        double minTime = 0);

/// The time in seconds of one of the `count` operations that `operation` is called for.
[[nodiscard]] double timeOf(int count, std::function<void()> const& operation);

/// As above, with `threads` threads that perform `count` operations each. `operation` gets the
/// numbers of its thread and of the operation in that thread, from 0 on. The time is that of all
/// threads together, by operation.
[[nodiscard]] double timeOnThreads(int threads, int count,
                                   std::function<void(int thread, int i)> const& operation);

}  // namespace Ostrel::Networking::Benchmarks
