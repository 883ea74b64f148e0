#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Performs requests over the network through libcpr, each in its own session. Uses only HTTP and
/// HTTPS, also for redirects; other protocols end as `ErrorCode::UnsupportedProtocol`. Proxy
/// variables of the environment have no effect.
///
/// A request that cannot be sent ends as `ErrorCode::NotPerformed`, without network traffic or a
/// callback. That is a request whose URL is not valid, or one that cannot be sent unchanged over
/// HTTP, for which `Error::message` names the field and the reason:
/// - NUL in the text of the URL, a header, a cookie value in double quotes, a part of a form or the
///   proxy;
/// - a line break in a header, in such a cookie value, or in the name or media type of a part;
/// - a header name that is empty or contains a colon or a space.
///
/// Throws `std::runtime_error` if libcpr reports an outcome that this library does not know, or if
/// libcurl refuses an option that these promises depend on, and `std::bad_alloc` if memory runs
/// out, for example because a body is too large. Safe to call from several threads. Changes no
/// signal handler; a process should ignore SIGPIPE. A name lookup that takes longer than its call
/// goes on in a thread of libcurl, which ends by itself.
class QORNETWORKING_EXPORT CprHttpClient final : public IHttpClient {
public:
    Response get(Request const& request, Options const& options) override;
    Response head(Request const& request, Options const& options) override;
    Response post(Request const& request, std::string const& body, Options const& options) override;
    Response post(Request const& request, MultiPart const& multiPart,
                  Options const& options) override;
};

}  // namespace Ostrel::Networking
