#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>
#include <SystemConfiguration/SystemConfiguration.h>
#include <glog/logging.h>

#include "Networking/Url.h"

namespace Ostrel::Networking {

namespace {

/// The entry of the settings for one protocol. Holds the addresses of its keys, which are constant;
/// the keys are known only after the frameworks are loaded.
struct Entry {
    std::string_view protocol;
    ProxyType type;
    CFStringRef const* enableKey;
    CFStringRef const* hostKey;
    CFStringRef const* portKey;
};

constexpr Entry ENTRIES[] = {
    {"http", ProxyType::Http, &kSCPropNetProxiesHTTPEnable, &kSCPropNetProxiesHTTPProxy,
     &kSCPropNetProxiesHTTPPort},
    {"https", ProxyType::Https, &kSCPropNetProxiesHTTPSEnable, &kSCPropNetProxiesHTTPSProxy,
     &kSCPropNetProxiesHTTPSPort},
    {"socks", ProxyType::Socks, &kSCPropNetProxiesSOCKSEnable, &kSCPropNetProxiesSOCKSProxy,
     &kSCPropNetProxiesSOCKSPort},
};

/// Returns null for a protocol without an entry.
Entry const* entryFor(std::string const& protocol) {
    auto const found =
        std::find_if(std::begin(ENTRIES), std::end(ENTRIES),
                     [&protocol](Entry const& entry) { return entry.protocol == protocol; });
    return found == std::end(ENTRIES) ? nullptr : found;
}

struct Release {
    void operator()(CFDictionaryRef snapshot) const { CFRelease(snapshot); }
};
using Snapshot = std::unique_ptr<std::remove_pointer_t<CFDictionaryRef>, Release>;

/// Returns nothing if the UTF-8 form is longer than the UTF-16 form, that is, unless `text` is
/// ASCII.
std::optional<std::string> utf8Of(CFStringRef text) {
    auto const size = CFStringGetLength(text) + 1;
    std::string utf8(static_cast<std::size_t>(size), '\0');
    if (!CFStringGetCString(text, utf8.data(), size, kCFStringEncodingUTF8)) {
        return std::nullopt;
    }
    utf8.resize(std::strlen(utf8.c_str()));
    return utf8;
}

/// The port is whatever the conversion leaves; its result is ignored.
std::int32_t portOf(CFNumberRef number) {
    std::int32_t port = 0;
    CFNumberGetValue(number, kCFNumberIntType, &port);
    return port;
}

ProxyInfo readProxy(Entry const& entry) {
    Snapshot const snapshot(SCDynamicStoreCopyProxies(nullptr));
    if (!snapshot) {
        return {};
    }
    auto const isEnabled = CFDictionaryGetValue(snapshot.get(), *entry.enableKey);
    auto const port = CFDictionaryGetValue(snapshot.get(), *entry.portKey);
    auto const host = CFDictionaryGetValue(snapshot.get(), *entry.hostKey);
    // Only the presence of the flag counts; a 0 does not switch the entry off.
    if (!isEnabled || !port || !host) {
        return {};
    }
    auto text = utf8Of(static_cast<CFStringRef>(host));
    if (!text) {
        return {};
    }
    return {entry.type, std::move(*text), portOf(static_cast<CFNumberRef>(port))};
}

}  // namespace

class QORNETWORKING_HIDDEN NativeProxyProvider::Impl {
public:
    [[nodiscard]] ProxyInfo getSystemProxy(std::string const& url) const {
        // Only the protocol counts, and query and fragment of a printed URL need not be of the
        // grammar: `Url` prints a parameter "1/2" that it would not parse.
        auto const entry = entryFor(Url(url.substr(0, url.find_first_of("?#"))).protocol());
        if (!entry) {
            return {};
        }
        try {
            return readProxy(*entry);
        } catch (std::exception const& e) {
            LOG(ERROR) << "Error getting system proxy" << e.what();
            return {};
        }
    }
};

NativeProxyProvider::NativeProxyProvider() : impl_(std::make_unique<Impl>()) {}

NativeProxyProvider::~NativeProxyProvider() = default;

ProxyInfo NativeProxyProvider::getProxy(std::string const& url) const {
    return impl_->getSystemProxy(url);
}

}  // namespace Ostrel::Networking
