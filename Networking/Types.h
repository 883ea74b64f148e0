#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Networking/Export.h"
#include "Networking/Url.h"

namespace Ostrel::Networking {

/// Orders header names without regard to the case of the letters A to Z (RFC 9110, section 5.1), in
/// every locale. All other bytes compare by their unsigned values.
struct QORNETWORKING_EXPORT CaseInsensitiveCompare {
    /// Whether `a` orders before `b`.
    bool operator()(std::string const& a, std::string const& b) const;
};

/// The target of a call, and the headers and cookies to send. The caller owns it; it must not
/// change during the call.
struct Request {
    /// The target. A request whose URL is not valid is never sent, and the fragment of a URL never
    /// is.
    ///
    /// The path is sent with its dot segments resolved and with bytes above 127 percent-encoded. A
    /// path that was set without a leading "/" continues the host or port, so the request goes
    /// elsewhere.
    ///
    /// Names and values of parameters are percent-encoded, also if they already are: "%20" is sent
    /// as "%2520" (docs/cookbook/requests.md sends a link unchanged). A parameter with an empty
    /// value is sent as its name alone, without "=".
    Url url;

    /// Name to value. A header with an empty value is sent without a value. A header "Cookie"
    /// replaces all of `cookies`. "Content-Length" and "Transfer-Encoding" are sent as given, even
    /// if they do not fit the body: leave them to the transport.
    ///
    /// Headers are also sent to the targets of redirects, except "Authorization" and "Cookie",
    /// which are not sent to another host.
    std::map<std::string, std::string, CaseInsensitiveCompare> headers = {};

    /// Name to value. Names and values are percent-encoded, except a value in double quotes.
    ///
    /// Sent to the host of the URL and, before libcurl 8.21, to every target of a redirect. Cookies
    /// that a redirect sets are also sent, according to their domain and path.
    std::map<std::string, std::string> cookies = {};
};

/// Limits, proxy and callbacks of one call. The caller owns it; it must not change during the call.
/// The callbacks run on the thread that made the call and must not throw.
struct Options {
    /// In bytes per second. A transfer that is slower for `lowSpeedTime` ends as
    /// `ErrorCode::OperationTimedOut`. No effect unless `lowSpeedTime` is also above 0.
    ///
    /// The speed is an average of about five seconds, so a sudden stall may be noticed six seconds
    /// later than that. Connecting is not covered, nor are the TLS handshake and the tunnel through
    /// a proxy.
    std::int32_t lowSpeedLimit = 0;

    /// In seconds; see `lowSpeedLimit`.
    std::int32_t lowSpeedTime = 0;

    /// Time limit of the whole transfer, in microseconds, truncated to milliseconds. Below 1000,
    /// and so by default, there is none. In any case, the transport limits connecting to 300
    /// seconds.
    std::int64_t timeout = 0;

    /// Whether redirects are followed. A POST stays a POST, and its body is sent again, even to
    /// another host.
    bool followRedirects = false;

    /// How many redirects are followed before the call ends as `ErrorCode::TooManyRedirects`; with
    /// the default, 0, it ends at the first. -1 means no limit; below -1, libcpr's limit of 50
    /// applies.
    std::int32_t maxRedirects = 0;

    /// Minimum time between two calls of `onProgress`, in microseconds.
    std::int64_t progressInterval = 0;

    /// URL of an HTTP proxy; empty for none. Only host and port are used: not the protocol, nor
    /// user and password. If the port is missing or the text is not a URL, the call ends as
    /// `ErrorCode::ProxyResolutionFailure`.
    std::string proxy;

    /// Returning true ends the transfer as `ErrorCode::RequestCancelled`. May be empty.
    ///
    /// Polled before each piece of the body and at least about once a second. From libcurl 8.20 on,
    /// not before the call is connected: limit that time with `timeout`.
    std::function<bool()> isCancelled;

    /// Reports the progress of the download, in bytes as transferred, before decompression. May be
    /// empty.
    ///
    /// Called at most once per `progressInterval`, when the count has changed, and only if a total
    /// of at least 1024 is announced. The last report may be below the total: the end of the call
    /// is the end. Bodies of redirects are reported as well.
    std::function<void(std::int64_t downloaded, std::int64_t total)> onProgress;

    /// Receives each piece of the body as it arrives, decompressed. If empty, the body is collected
    /// in `Response::body`.
    std::function<void(std::string chunk)> onData;
};

/// A multipart form, RFC 7578.
struct MultiPart {
    /// A field of the form.
    struct Part {
        /// Name of the form field.
        std::string name;
        /// Content of the field, sent inline.
        std::string value;
        /// Media type of the field; empty for none.
        std::string contentType = {};
    };

    /// Sent in this order.
    std::vector<Part> parts;
};

/// The clients that `createHttpClient` makes.
enum class HttpClientType : std::int32_t {
    Cpr = 0,   ///< `CprHttpClient`, which performs requests over the network.
    Stub = 1,  ///< A client without network traffic.
};

}  // namespace Ostrel::Networking
