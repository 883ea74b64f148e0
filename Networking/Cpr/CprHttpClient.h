#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Performs requests over the network through libcpr, each in its own session. Uses only HTTP and
/// HTTPS, also for redirects; other protocols end as `ErrorCode::UnsupportedProtocol`. Proxy
/// variables of the environment have no effect.
///
/// A request whose URL is not valid, or that cannot be sent unchanged over HTTP, ends as
/// `ErrorCode::NotPerformed`, without network traffic or a callback. In the second case
/// `Error::message` names the field and the reason:
/// - NUL in the text of the URL, a header, a cookie value in double quotes, a part of a form or the
///   proxy;
/// - a line break in a header, in such a cookie value, or in the name or media type of a part;
/// - a header name that is not a token (RFC 9110, section 5.6.2), or a value of blanks;
/// - 1 MiB or more in one of these texts, except the value of a part, or in URL, headers and
/// cookies
///   together, before percent-encoding.
///
/// Heads and trailers of the responses of one call are limited to 1 MiB, and a response may be
/// compressed once; beyond that the call ends as `ErrorCode::InternalError`. A POST needs memory
/// for about three times its body, a form for five times.
///
/// Throws `std::runtime_error` if libcpr reports an outcome that this library does not know, or if
/// libcurl refuses an option that these promises depend on, and `std::bad_alloc` if memory runs
/// out. With libcurl 8.18 and 8.19 a server can make libcpr throw `std::invalid_argument`. A caller
/// that must not fail catches `std::exception`.
///
/// Safe to call from several threads. Every call must have ended before `main` returns or `exit` is
/// called. Changes no signal handler; a process should ignore SIGPIPE.
///
/// A name lookup that outlasts its call goes on in a thread of libcurl. So a shared library is not
/// unloaded by `dlclose` on Linux; on macOS, and where it is linked statically into a plug-in, do
/// not unload it.
class QORNETWORKING_EXPORT CprHttpClient final : public IHttpClient {
public:
    Response get(Request const& request, Options const& options) override;
    Response head(Request const& request, Options const& options) override;
    Response post(Request const& request, std::string const& body, Options const& options) override;
    Response post(Request const& request, MultiPart const& multiPart,
                  Options const& options) override;
};

}  // namespace Ostrel::Networking
