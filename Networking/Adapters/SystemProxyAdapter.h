#pragma once

#include <memory>

#include "Networking/Adapters/ClientAdapter.h"
#include "Networking/Export.h"
#include "Networking/NativeProxyProvider/IProxyProvider.h"

namespace Ostrel::Networking {

/// Sends every request through the proxy that a provider names for its URL, in place of the proxy
/// in the `Options`. If the provider names none, the call is passed on unchanged. The provider is
/// asked for every call. Throws what the provider throws.
class QORNETWORKING_EXPORT SystemProxyAdapter final : public ClientAdapter {
public:
    /// Shares ownership of `client` and takes ownership of `provider`; neither may be empty.
    SystemProxyAdapter(std::shared_ptr<IHttpClient> const& client,
                       std::unique_ptr<IProxyProvider> provider);

    /// Returns `options`, with its proxy replaced if the provider names one for `request`: by the
    /// protocol of the request's URL, "://", host, ":" and port. None of them is checked.
    [[nodiscard]] Options addProxyUrlOption(Options options, Request const& request) const;

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override;

    std::unique_ptr<IProxyProvider> provider_;
};

}  // namespace Ostrel::Networking
