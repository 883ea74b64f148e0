#pragma once

#include <chrono>
#include <cstdint>

namespace Ostrel::Time {

/// A monotonic clock. Safe to call from several threads.
class SteadyClock {
public:
    /// Microseconds since an arbitrary start.
    [[nodiscard]] std::int64_t Now() const {
        using namespace std::chrono;
        return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
    }
};

}  // namespace Ostrel::Time
