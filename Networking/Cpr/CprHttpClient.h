#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Performs requests over the network through libcpr, each in a session of its own. A request whose
/// URL is not valid is answered with `ErrorCode::NotPerformed`, without network traffic and without
/// a call of a callback. Throws `std::runtime_error` if libcpr reports an outcome that this library
/// does not know. Safe to call from several threads.
class QORNETWORKING_EXPORT CprHttpClient final : public IHttpClient {
public:
    Response get(Request const& request, Options const& options) override;
    Response head(Request const& request, Options const& options) override;
    Response post(Request const& request, std::string const& body, Options const& options) override;
    Response post(Request const& request, MultiPart const& multiPart,
                  Options const& options) override;
};

}  // namespace Ostrel::Networking
