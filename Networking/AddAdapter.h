#pragma once

#include <memory>
#include <vector>

#include "Networking/Adapters/CookieJarAdapter.h"
#include "Networking/Adapters/ForceProtocolAdapter.h"
#include "Networking/Adapters/RetriesAdapter.h"
#include "Networking/Adapters/SystemProxyAdapter.h"
#include "Networking/CookieJar/ICookieJar.h"
#include "Networking/Export.h"
#include "Networking/IHttpClient.h"
#include "Ostrel/NotNull.h"

/// @file
/// Factories of the adapters. Each wraps a client and returns the adapter, which shares ownership
/// of the client. The caller owns the adapter and can wrap it again:
///
///     auto client = addRetriesAdapter(
///         addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), jar),
///         {{2'000'000}, {10'000'000}});
///
/// `NotNull` throws `std::invalid_argument` if the client is empty.
namespace Ostrel::Networking {

/// Wraps `client` so that it remembers cookies in `jar`. Shares ownership of `jar`; if `jar` is
/// empty, the adapter makes its own `CookieJar`.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> addCookieJarAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client, std::shared_ptr<ICookieJar> const& jar);

/// Wraps `client` so that calls that time out are repeated along `retries`, which has one entry for
/// each attempt, including the first. Throws `std::runtime_error` if `retries` is empty.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> addRetriesAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client, std::vector<Retry> const& retries);

/// Wraps `client` so that every request is sent with the protocol that `settings` names.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> addForceProtocolAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client, ForceProtocolSettings settings);

/// Wraps `client` so that every request is sent through the system's proxy for its URL.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> addSystemProxyAdapter(
    NotNull<std::shared_ptr<IHttpClient>> const& client);

}  // namespace Ostrel::Networking
