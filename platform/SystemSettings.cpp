#include "platform/SystemSettings.h"

#include <atomic>
#include <locale>
#include <mutex>
#include <utility>

/// A snapshot. Strings and numbers are `SystemSettings::Value` objects in its settings.
struct CFDictionaryObject {
    Platform::SystemSettings settings;
};

struct CFStringObject {};

namespace Platform {

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

SystemSettings::Value const& valueOf(void const* object) {
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

}  // namespace Platform

using Platform::SystemSettings;

namespace {

// A key is told from the others by its address alone.
constexpr CFStringObject KEYS[9] = {};

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
    ++Platform::state().taken;
    return snapshot;
}

void CFRelease(CFTypeRef object) {
    ++Platform::state().released;
    delete static_cast<CFDictionaryRef>(object);
}

void const* CFDictionaryGetValue(CFDictionaryRef dictionary, void const* key) {
    auto const& values = dictionary->settings.values;
    auto const found = values.find(key);
    return found == values.end() ? nullptr : &found->second;
}

CFIndex CFStringGetLength(CFStringRef text) {
    auto const units = std::get_if<std::u16string>(&Platform::valueOf(text));
    return units ? static_cast<CFIndex>(units->size()) : 0;
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex bufferSize, CFStringEncoding) {
    if (auto const onCopy = SystemSettings::current().onCopy) {
        onCopy();
    }
    auto const units = std::get_if<std::u16string>(&Platform::valueOf(text));
    if (!units || bufferSize < 1) {
        return false;
    }
    using Utf8 = std::codecvt<char16_t, char, std::mbstate_t>;
    std::mbstate_t state{};
    char16_t const* read = nullptr;
    auto const end = units->data() + units->size();
    auto const result =
        std::use_facet<Utf8>(std::locale::classic())
            .out(state, units->data(), end, read, buffer, buffer + bufferSize - 1, buffer);
    *buffer = '\0';
    return result == Utf8::ok && read == end;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType, void* value) {
    auto const wide = std::get_if<std::int64_t>(&Platform::valueOf(number));
    if (!wide) {
        return false;
    }
    auto const narrow = static_cast<int>(*wide);
    *static_cast<int*>(value) = narrow;
    return narrow == *wide;
}
// NOLINTEND(readability-identifier-naming)
