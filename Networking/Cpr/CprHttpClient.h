#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Performs requests over the network through libcpr, each in its own session. Uses only HTTP and
/// HTTPS, also for redirects; other protocols end as `ErrorCode::UnsupportedProtocol`. Proxy
/// variables of the environment have no effect.
///
/// A request whose URL is not valid, or that contains what HTTP or the transport cannot carry, ends
/// as `ErrorCode::NotPerformed`, without network traffic or a callback. In the second case
/// `Error::message` names the field and the reason:
/// - NUL in the text of the URL, a header, a cookie value in double quotes, a part of a form or the
///   proxy;
/// - a line break in a header, in such a cookie value, or in the name or media type of a part;
/// - a header name that is not a token (RFC 9110, section 5.6.2), or a header value of blanks;
/// - 1 MiB or more in one of these texts, except the value of a part;
/// - 1 MiB or more in the head of the request as it is sent, about 1 KiB by the transport included.
///
/// The heads and trailers of the responses of one call are limited to 1 MiB, and a response may be
/// compressed once, even if its body is not read; beyond that the call ends as
/// `ErrorCode::InternalError`.
///
/// A POST needs memory for about three times its body. If memory runs out, the call throws
/// `std::bad_alloc` or ends as an error; inside libcpr and libcurl, it may also end the process, or
/// send the request without a header, a cookie or a parameter.
///
/// Throws `std::runtime_error` if libcpr reports an outcome that this library does not know, or if
/// libcurl refuses an option that these promises depend on. With some releases of libcurl a server
/// can make libcpr throw `std::invalid_argument`. A caller that must not fail catches
/// `std::exception`.
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
