#pragma once

#include <memory>
#include <string>

#include "Networking/Export.h"
#include "Networking/NativeProxyProvider/IProxyProvider.h"

namespace Ostrel::Networking {

/// Finds proxies in the network settings of macOS, which are read for every call; on other systems
/// there is no proxy. Safe to call from several threads.
///
/// The settings have one entry each for URLs with the protocols "http", "https" and "socks", in
/// lower case. An entry is used if its host, its port and its enable flag are present; the system
/// removes host and port of an entry that is switched off. The host must be ASCII.
///
/// Automatic configuration (PAC), exception lists and entries for single network interfaces are not
/// read. Settings that cannot be read count as no proxy, which is not logged.
///
/// Of the URL, only the text before its query and fragment is parsed. If that is not of the grammar
/// of `Url`, as for the host "[::1]", there is no proxy.
class QORNETWORKING_EXPORT NativeProxyProvider final : public IProxyProvider {
public:
    NativeProxyProvider();
    ~NativeProxyProvider() override;
    NativeProxyProvider(NativeProxyProvider const&) = delete;
    NativeProxyProvider& operator=(NativeProxyProvider const&) = delete;

    /// Returns no proxy if the settings hold none for `url`. A `std::exception` that is thrown
    /// while the settings are read is logged through glog, and no proxy is returned; any other
    /// exception, and one from parsing `url`, is passed on.
    [[nodiscard]] ProxyInfo getProxy(std::string const& url) const override;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Ostrel::Networking
