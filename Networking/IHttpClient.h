#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/Response.h"
#include "Networking/Types.h"

/// HTTP for desktop applications: clients, adapters that add a behaviour to any client, and the
/// values that they take and return.
namespace Ostrel::Networking {

/// An HTTP client. Every operation blocks the calling thread until the transfer has ended. Transfer
/// failures are reported in `Response::error`.
///
/// All clients and adapters of this library are safe to call from several threads, provided that
/// the callbacks of the `Options` are.
class QORNETWORKING_EXPORT IHttpClient {
public:
    virtual ~IHttpClient() = default;

    /// Performs a GET.
    [[nodiscard]] virtual Response get(Request const& request, Options const& options) = 0;

    /// Performs a HEAD.
    [[nodiscard]] virtual Response head(Request const& request, Options const& options) = 0;

    /// Performs a POST of the bytes of `body`, unchanged. Set their media type in the header
    /// "Content-Type"; by default the transport sends "application/x-www-form-urlencoded".
    [[nodiscard]] virtual Response post(Request const& request, std::string const& body,
                                        Options const& options) = 0;

    /// Performs a POST of a multipart form.
    [[nodiscard]] virtual Response post(Request const& request, MultiPart const& multiPart,
                                        Options const& options) = 0;
};

}  // namespace Ostrel::Networking
