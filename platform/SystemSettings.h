#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>

#include <SystemConfiguration/SystemConfiguration.h>

namespace Platform {

/// The network proxy settings of a system that has none of its own, for tests to script. Without a
/// script there is no proxy. `current` and `set` are safe to call from several threads.
struct SystemSettings {
    /// A text, which may be ill-formed, or a number, which may be too large for the port.
    using Value = std::variant<std::u16string, std::int64_t>;

    /// The settings by the keys `kSCPropNetProxies...`; a key that is not here is absent.
    std::map<void const*, Value> values;
    /// Whether a snapshot can be had.
    bool isReadable = true;
    /// Called, if not empty, before a text is copied out of a snapshot; may throw.
    std::function<void()> onCopy = nullptr;

    [[nodiscard]] static SystemSettings current();
    /// Replaces the settings; snapshots that were taken stay as they are.
    static void set(SystemSettings settings);
};

/// How many snapshots were taken and released since the program began.
struct SnapshotCount {
    int taken = 0;
    int released = 0;

    [[nodiscard]] static SnapshotCount current();
};

}  // namespace Platform
