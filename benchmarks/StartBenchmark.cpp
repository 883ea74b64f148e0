#include <chrono>
#include <string>

#include "benchmarks/Benchmarks.h"
#include "benchmarks/Support/Comparison.h"
#include "benchmarks/Support/Process.h"

namespace Ostrel::Networking::Benchmarks {

namespace {

/// Time from before the start of a process to its `main`. The steady clock is one for all
/// processes.
Contestant starting(std::string const& name, std::string const& program) {
    return {name, [program] {
                using std::chrono::nanoseconds;
                auto const start = std::chrono::steady_clock::now().time_since_epoch();
                auto const entered = nanoseconds(std::stoll(outputOf({program})));
                return std::chrono::duration<double>(entered - start).count();
            }};
}

}  // namespace

void registerStartBenchmarks() {
    registerComparison("Start", {starting("library", START_LIBRARY), starting("cpr", START_CPR),
                                 starting("plain", START_PLAIN)});
}

}  // namespace Ostrel::Networking::Benchmarks
