#include "Networking/AddAdapter.h"

#include "Networking/CookieJar/CookieJar.h"
#include "Networking/NativeProxyProvider/NativeProxyProvider.h"

namespace Ostrel::Networking {

std::unique_ptr<IHttpClient> addCookieJarAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client, std::shared_ptr<ICookieJar> const& jar) {
    return std::make_unique<CookieJarAdapter>(client, jar ? jar : std::make_shared<CookieJar>());
}

std::unique_ptr<IHttpClient> addRetriesAdapter(NotNull<std::shared_ptr<IHttpClient>> const& client,
                                               std::vector<Retry> const& retries) {
    return std::make_unique<RetriesAdapter>(client, retries);
}

std::unique_ptr<IHttpClient> addForceProtocolAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client, ForceProtocolSettings settings) {
    return std::make_unique<ForceProtocolAdapter>(client, settings);
}

std::unique_ptr<IHttpClient> addSystemProxyAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client) {
    return std::make_unique<SystemProxyAdapter>(client, std::make_unique<NativeProxyProvider>());
}

}  // namespace Ostrel::Networking
