#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Ostrel::Networking::Benchmarks {

/// One side of a comparison.
struct Contestant {
    std::string name;
    /// Does the work once and returns its cost: seconds, or bytes of memory.
    std::function<double()> measure;
};

/// Registers a benchmark in which the contestants take turns, so that variations in the speed of
/// the machine affect all of them alike. Each repetition has these counters, medians over its
/// turns: the figure of each contestant under its name, and the ratio of the first contestant to
/// each other under "first/other".
void registerComparison(std::string const& name, std::vector<Contestant> const& contestants);

/// Calls `operation` `count` times on each of `threads` threads. Returns the time in seconds,
/// divided by the number of calls of all threads.
[[nodiscard]] double timeOf(int count, std::function<void()> const& operation, int threads = 1);

}  // namespace Ostrel::Networking::Benchmarks
