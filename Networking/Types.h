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

/// The target of a call, and the headers and cookies to send. The caller owns it; it must outlive
/// the call.
struct Request {
    /// The target. A request whose URL is not valid is never sent. The fragment is not sent. Names
    /// and values of query parameters are always percent-encoded when they are sent: a parsed "%20"
    /// is sent as "%2520". So add decoded values through `Url::addParameter`. A parameter with an
    /// empty value is sent as its name alone, without "=".
    Url url;
    /// Name to value. A header with an empty value is sent without a value. A header "Cookie"
    /// replaces all of `cookies`. Headers are also sent to the targets of redirects, except
    /// "Authorization" and "Cookie" on another host.
    std::map<std::string, std::string, CaseInsensitiveCompare> headers = {};
    /// Name to value. Sent to the host of the URL and, before libcurl 8.21, to every target of a
    /// redirect. Names and values are percent-encoded, except a value in double quotes. Cookies
    /// that a redirect sets are sent along where they belong.
    std::map<std::string, std::string> cookies = {};
};

/// Limits, proxy and callbacks of one call. The caller owns it; it must outlive the call and not
/// change during it. The callbacks run on the thread that made the call and must not throw.
struct Options {
    /// In bytes per second. Once connected, a transfer that is slower than this for `lowSpeedTime`
    /// ends as `ErrorCode::OperationTimedOut`. Has no effect unless both are above 0.
    std::int32_t lowSpeedLimit = 0;
    /// In seconds.
    std::int32_t lowSpeedTime = 0;
    /// Time limit of the whole transfer, in microseconds; passed on in milliseconds, truncated
    /// toward zero. Below 1000, the whole transfer has no limit, but connecting has the transport's
    /// own limit of 300 seconds.
    std::int64_t timeout = 0;
    /// Whether redirects are followed. A POST stays a POST, and its body is sent again, even to
    /// another host.
    bool followRedirects = false;
    /// How many redirects are followed before the call ends as `ErrorCode::TooManyRedirects`. -1
    /// means no limit; below -1, libcpr's limit of 50 applies.
    std::int32_t maxRedirects = 0;
    /// Minimum time between two calls of `onProgress`, in microseconds.
    std::int64_t progressInterval = 0;
    /// URL of a proxy, with protocol, host and port; only host and port are used. Empty for no
    /// proxy. If the port is missing or the text is not a URL, the call ends as
    /// `ErrorCode::ProxyResolutionFailure`.
    std::string proxy;
    /// Polled before each call of `onData` and at each progress event of the transport, at least
    /// about once a second; from libcurl 8.20 on only once connected, so limit the time before that
    /// with `timeout`. Returning true ends the transfer as `ErrorCode::RequestCancelled`. May be
    /// empty.
    std::function<bool()> isCancelled;
    /// Reports the progress of the download in bytes as transferred, before decompression. Called
    /// at most once per `progressInterval`, only if the announced total is at least 1024, and only
    /// when the count has changed. On a fast link, more than a megabyte may arrive between two
    /// progress events of the transport. Bodies of redirects are reported as well. May be empty.
    std::function<void(std::int64_t downloaded, std::int64_t total)> onProgress;
    /// If set, receives each piece of the response body as it arrives, decompressed, and
    /// `Response::body` stays empty. May be empty.
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
