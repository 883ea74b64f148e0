#include "Networking/Adapters/SystemProxyAdapter.h"

#include <string>
#include <utility>

namespace Ostrel::Networking {

SystemProxyAdapter::SystemProxyAdapter(std::shared_ptr<IHttpClient> const& client,
                                       std::unique_ptr<IProxyProvider> provider)
    : ClientAdapter(client), provider_(std::move(provider)) {}

Options SystemProxyAdapter::addProxyUrlOption(Options options, Request const& request) const {
    auto const proxy = provider_->getProxy(request.url.toString());
    if (proxy.type != ProxyType::None) {
        options.proxy =
            request.url.protocol() + "://" + proxy.host + ":" + std::to_string(proxy.port);
    }
    return options;
}

Response SystemProxyAdapter::perform(Request const& request, Options const& options,
                                     Operation const& operation) {
    return operation(client(), request, addProxyUrlOption(options, request));
}

}  // namespace Ostrel::Networking
