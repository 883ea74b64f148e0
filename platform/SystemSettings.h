#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>

#include <SystemConfiguration/SystemConfiguration.h>

namespace Ostrel {
inline namespace Platform {

/// Network proxy settings for systems that have none; tests script them. Without a script there is
/// no proxy. `current` and `set` are safe to call from several threads.
struct SystemSettings {
    /// A text, which may be ill-formed, or a number, which may be too large for the port.
    using Value = std::variant<std::u16string, std::int64_t>;

    /// The settings, by the keys `kSCPropNetProxies...`.
    std::map<void const*, Value> values;
    /// Whether a snapshot can be taken.
    bool isReadable = true;
    /// Called, if not empty, before a text is copied out of a snapshot; may throw.
    std::function<void()> onCopy = nullptr;

    [[nodiscard]] static SystemSettings current();
    /// Replaces the settings; existing snapshots are not changed.
    static void set(SystemSettings settings);
};

/// How many snapshots were taken and released since the program started.
struct SnapshotCount {
    int taken = 0;
    int released = 0;

    [[nodiscard]] static SnapshotCount current();
};

}  // namespace Platform
}  // namespace Ostrel
