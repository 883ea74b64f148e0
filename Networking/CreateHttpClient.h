#pragma once

#include <memory>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"
#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Creates a client, which the caller owns. Throws `std::runtime_error` if `type` is not an
/// enumerator.
///
/// The stub answers every call at once with an empty `Response` whose outcome is `ErrorCode::Ok`.
/// It ignores all arguments and calls no callback, so that an application can run with networking
/// switched off.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> createHttpClient(
    HttpClientType type);

}  // namespace Ostrel::Networking
