#pragma once

#include <memory>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"
#include "Networking/Types.h"

namespace Ostrel::Networking {

/// Makes a client, which the caller owns. The stub answers every call at once with an empty
/// `Response` whose outcome is `ErrorCode::Ok`; it looks at no argument and calls no callback, so
/// an application runs with its networking switched off. Throws `std::runtime_error` if `type` is
/// none of the enumerators.
[[nodiscard]] QORNETWORKING_EXPORT std::unique_ptr<IHttpClient> createHttpClient(
    HttpClientType type);

}  // namespace Ostrel::Networking
