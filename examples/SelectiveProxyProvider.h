#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Networking/Adapters/SystemProxyAdapter.h>
#include <Networking/NativeProxyProvider/NativeProxyProvider.h>
#include <Networking/Url.h>

namespace Recipes {

using namespace Ostrel::Networking;

// [snippet]
/// Returns no proxy for the hosts in `direct`, and for others what `provider` returns. An entry is
/// a host, or the end of hosts after a dot, such as ".example.com"; in lower case.
class SelectiveProxyProvider final : public IProxyProvider {
public:
    SelectiveProxyProvider(std::unique_ptr<IProxyProvider> provider,
                           std::vector<std::string> direct)
        : provider_(std::move(provider)), direct_(std::move(direct)) {}

    ProxyInfo getProxy(std::string const& url) const override {
        // A query can keep the text from being parsed as a URL.
        auto host = Url(url.substr(0, url.find_first_of("?#"))).host();
        for (auto& c : host) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        auto const isHost = [&host](std::string const& entry) {
            auto const end = host.size() - std::min(host.size(), entry.size());
            return host.substr(entry[0] == '.' ? end : 0) == entry;
        };
        auto const isDirect = std::any_of(direct_.begin(), direct_.end(), isHost);
        return isDirect ? ProxyInfo() : provider_->getProxy(url);
    }

private:
    std::unique_ptr<IProxyProvider> provider_;
    std::vector<std::string> direct_;
};

/// Wraps `client` so that it uses the system's proxy, except for the hosts in `direct`.
inline std::unique_ptr<IHttpClient> addSelectiveProxy(std::shared_ptr<IHttpClient> const& client,
                                                      std::vector<std::string> direct) {
    return std::make_unique<SystemProxyAdapter>(
        client, std::make_unique<SelectiveProxyProvider>(std::make_unique<NativeProxyProvider>(),
                                                         std::move(direct)));
}
// [/snippet]

}  // namespace Recipes
