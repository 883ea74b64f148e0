#pragma once

#include <cstdint>
#include <string>

#include "Networking/Export.h"

namespace Ostrel::Networking {

/// The kind of a proxy, named after the protocol of the URLs that it serves.
enum class ProxyType : std::int32_t {
    None = 0,
    Http = 1,
    Https = 2,
    Socks = 4,
};

/// The proxy that serves a URL. `host` and `port` have a meaning only if `type` is not
/// `ProxyType::None`.
struct ProxyInfo {
    /// `ProxyType::None` if there is no proxy for the URL.
    ProxyType type = ProxyType::None;
    /// In UTF-8, unchecked, possibly empty.
    std::string host;
    /// Not checked against the range of ports.
    std::int32_t port = 0;
};

/// Finds the proxy for a URL. Implementations must be safe to call from several threads.
class QORNETWORKING_EXPORT IProxyProvider {
public:
    virtual ~IProxyProvider() = default;

    /// Returns the proxy for the URL whose text is `url`.
    [[nodiscard]] virtual ProxyInfo getProxy(std::string const& url) const = 0;
};

}  // namespace Ostrel::Networking
