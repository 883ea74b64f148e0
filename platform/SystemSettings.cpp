#include "platform/SystemSettings.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Ostrel {
inline namespace Platform {

/// A snapshot. Strings and numbers are `SystemSettings::Value` objects in its settings.
struct CFDictionaryObject {
    SystemSettings settings;
};

struct CFStringObject {};

namespace {

struct State {
    std::mutex mutex;
    SystemSettings settings;
    std::atomic<int> taken = 0;
    std::atomic<int> released = 0;
};

State& state() {
    static State instance;
    return instance;
}

/// Ends the process on a null pointer, as macOS does.
SystemSettings::Value const& valueOf(void const* object) {
    if (object == nullptr) {
        std::abort();
    }
    return *static_cast<SystemSettings::Value const*>(object);
}

}  // namespace

SystemSettings SystemSettings::current() {
    std::lock_guard const lock(state().mutex);
    return state().settings;
}

void SystemSettings::set(SystemSettings settings) {
    std::lock_guard const lock(state().mutex);
    state().settings = std::move(settings);
}

SnapshotCount SnapshotCount::current() { return {state().taken, state().released}; }

namespace {

// A key is identified by its address.
constexpr CFStringObject KEYS[9] = {};

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Empty if a surrogate is not part of a pair.
std::optional<std::string> utf8Of(std::u16string_view units) {
    std::string utf8;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t point = units[i];
        if (isHighSurrogate(point) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (units[++i] - 0xDC00);
        } else if (isHighSurrogate(point) || isLowSurrogate(point)) {
            return std::nullopt;
        }
        auto const length = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
        constexpr unsigned LEADS[] = {0x00, 0xC0, 0xE0, 0xF0};
        utf8 += static_cast<char>(LEADS[length] | (point >> (6 * length)));
        for (auto left = length; left > 0; --left) {
            utf8 += static_cast<char>(0x80 | ((point >> (6 * (left - 1))) & 0x3F));
        }
    }
    return utf8;
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming): the names are the frameworks'.
CFStringRef const kSCPropNetProxiesHTTPEnable = &KEYS[0];
CFStringRef const kSCPropNetProxiesHTTPPort = &KEYS[1];
CFStringRef const kSCPropNetProxiesHTTPProxy = &KEYS[2];
CFStringRef const kSCPropNetProxiesHTTPSEnable = &KEYS[3];
CFStringRef const kSCPropNetProxiesHTTPSPort = &KEYS[4];
CFStringRef const kSCPropNetProxiesHTTPSProxy = &KEYS[5];
CFStringRef const kSCPropNetProxiesSOCKSEnable = &KEYS[6];
CFStringRef const kSCPropNetProxiesSOCKSPort = &KEYS[7];
CFStringRef const kSCPropNetProxiesSOCKSProxy = &KEYS[8];

CFDictionaryRef SCDynamicStoreCopyProxies(SCDynamicStoreRef) {
    auto settings = SystemSettings::current();
    if (!settings.isReadable) {
        return nullptr;
    }
    auto const snapshot = new CFDictionaryObject{std::move(settings)};
    ++state().taken;
    return snapshot;
}

void CFRelease(CFTypeRef object) {
    ++state().released;
    delete static_cast<CFDictionaryRef>(object);
}

void const* CFDictionaryGetValue(CFDictionaryRef dictionary, void const* key) {
    auto const& values = dictionary->settings.values;
    auto const found = values.find(key);
    return found == values.end() ? nullptr : &found->second;
}

CFIndex CFStringGetLength(CFStringRef text) {
    auto const units = std::get_if<std::u16string>(&valueOf(text));
    return units ? static_cast<CFIndex>(units->size()) : 0;
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex bufferSize, CFStringEncoding) {
    if (auto const onCopy = SystemSettings::current().onCopy) {
        onCopy();
    }
    auto const units = std::get_if<std::u16string>(&valueOf(text));
    auto const utf8 = units ? utf8Of(*units) : std::nullopt;
    if (!utf8 || bufferSize <= static_cast<CFIndex>(utf8->size())) {
        return false;
    }
    std::memcpy(buffer, utf8->c_str(), utf8->size() + 1);
    return true;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType, void* value) {
    auto const wide = std::get_if<std::int64_t>(&valueOf(number));
    if (!wide) {
        return false;
    }
    auto const narrow = static_cast<int>(*wide);
    *static_cast<int*>(value) = narrow;
    return narrow == *wide;
}
// NOLINTEND(readability-identifier-naming)

}  // namespace Platform
}  // namespace Ostrel
