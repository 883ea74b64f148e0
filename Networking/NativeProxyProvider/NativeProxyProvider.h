#pragma once

#include <memory>
#include <string>

#include "Networking/Export.h"
#include "Networking/NativeProxyProvider/IProxyProvider.h"

namespace Ostrel::Networking {

/// Answers from the proxy settings of macOS, read anew for every call; on other systems there is no
/// proxy. URLs with the protocols "http", "https" and "socks", in lower case, have an entry each,
/// taken as soon as all of it is present: its enable flag may be 0, its host must be ASCII.
/// Automatic configuration (PAC) and lists of exceptions are not consulted. Safe to call from
/// several threads.
class QORNETWORKING_EXPORT NativeProxyProvider final : public IProxyProvider {
public:
    NativeProxyProvider();
    ~NativeProxyProvider() override;
    NativeProxyProvider(NativeProxyProvider const&) = delete;
    NativeProxyProvider& operator=(NativeProxyProvider const&) = delete;

    /// A `std::exception` that is thrown while the settings are read is logged through glog, and
    /// the answer is that there is no proxy. Others are thrown, and so is what parsing `url`
    /// throws.
    [[nodiscard]] ProxyInfo getProxy(std::string const& url) const override;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Ostrel::Networking
