#pragma once

#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/Export.h"
#include "Networking/NativeProxyProvider/IProxyProvider.h"

namespace Ostrel::Networking {

/// Sends every request through the proxy that a provider returns for its URL, instead of the proxy
/// in the `Options`. If the provider returns none, the call is passed on unchanged. The provider is
/// asked for every call. Throws what the provider throws.
class QORNETWORKING_EXPORT SystemProxyAdapter final : public ClientAdapter {
public:
    /// Shares ownership of `client` and takes ownership of `provider`; neither may be empty.
    SystemProxyAdapter(std::shared_ptr<IHttpClient> const& client,
                       std::unique_ptr<IProxyProvider> provider);

    /// Returns `options` with `proxy` set to PROTOCOL://HOST:PORT: the protocol of the request's
    /// URL, and host and port of the provider's proxy, unchecked. Unchanged if there is none.
    [[nodiscard]] Options addProxyUrlOption(Options options, Request const& request) const;

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override;

    std::unique_ptr<IProxyProvider> provider_;
};

}  // namespace Ostrel::Networking
