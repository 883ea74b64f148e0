#pragma once

#include <string>

#include "Networking/Export.h"
#include "Networking/IHttpClient.h"

namespace Ostrel::Networking {

/// Performs requests over the network through libcpr, each in a session of its own. Only HTTP and
/// HTTPS are spoken, redirects included; other protocols end as `ErrorCode::UnsupportedProtocol`.
/// No proxy variable of the environment has an effect.
///
/// What cannot be sent is answered with `ErrorCode::NotPerformed`, without network traffic and
/// without a call of a callback: a request whose URL is not valid, and one that the wire cannot
/// carry as it is, with the field and the reason in `Error::message`. That is one with NUL in the
/// text of the URL, a header, a value of a cookie in double quotes, a part of a form or the proxy;
/// with a line break in a header, in such a value of a cookie, or in the name or media type of a
/// part; or with a header name that is empty or holds a colon or a space.
///
/// Throws `std::runtime_error` if libcpr reports an outcome that this library does not know, or if
/// libcurl refuses an option that keeps these promises.
/// Safe to call from several threads. Touches no signal handler; a process should ignore SIGPIPE.
class QORNETWORKING_EXPORT CprHttpClient final : public IHttpClient {
public:
    Response get(Request const& request, Options const& options) override;
    Response head(Request const& request, Options const& options) override;
    Response post(Request const& request, std::string const& body, Options const& options) override;
    Response post(Request const& request, MultiPart const& multiPart,
                  Options const& options) override;
};

}  // namespace Ostrel::Networking
