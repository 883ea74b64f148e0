#pragma once

#include <cstdint>
#include <string>

#include "Networking/Export.h"

namespace Ostrel::Networking {

/// The kinds of proxies, by the protocol of the URLs that they serve.
enum class ProxyType : std::int32_t {
    None = 0,
    Http = 1,
    Https = 2,
    Socks = 4,
};

/// Which proxy serves a URL. `host` and `port` mean something only if `type` is not
/// `ProxyType::None`.
struct ProxyInfo {
    /// `ProxyType::None` where the URL is served without a proxy.
    ProxyType type = ProxyType::None;
    /// In UTF-8, as its source has it: not checked, and possibly empty.
    std::string host;
    /// As its source has it: not checked against the range of ports.
    std::int32_t port = 0;
};

/// Tells which proxy serves a URL. Implementations must be safe to call from several threads.
class QORNETWORKING_EXPORT IProxyProvider {
public:
    virtual ~IProxyProvider() = default;

    /// The proxy for the URL with the text `url`.
    [[nodiscard]] virtual ProxyInfo getProxy(std::string const& url) const = 0;
};

}  // namespace Ostrel::Networking
