#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Networking/Export.h"
#include "Networking/Url.h"

namespace Ostrel::Networking {

/// Orders header names without regard to letter case, as RFC 9110, section 5.1, has it, by the C
/// library's `tolower`: in the locale of the process, which must not change while maps with this
/// ordering live. In the classic one, bytes above 127 compare by their unsigned values.
struct QORNETWORKING_EXPORT CaseInsensitiveCompare {
    /// Whether `a` comes before `b`.
    bool operator()(std::string const& a, std::string const& b) const;
};

/// What to ask for, and where. The caller owns it; it must outlive the call.
struct Request {
    /// Target, query parameters included. A request whose URL is not valid is never sent.
    Url url;
    /// Name to value. An empty value sends the header empty.
    std::map<std::string, std::string, CaseInsensitiveCompare> headers;
    /// Name to value. Sent whatever the host, to the targets of redirects too. Names and values go
    /// out percent-encoded, except a value in double quotes.
    std::map<std::string, std::string> cookies;
};

/// Limits, proxy and callbacks of one call. The caller owns it; it must outlive the call and not
/// change during it. The callbacks run on the thread that made the call and must not throw.
struct Options {
    /// In bytes per second. A transfer that stays below it for `lowSpeedTime` ends as
    /// `ErrorCode::OperationTimedOut`. Both must be above 0, or neither has an effect.
    std::int32_t lowSpeedLimit = 0;
    /// In seconds.
    std::int32_t lowSpeedTime = 0;
    /// Time limit of the whole transfer, in microseconds; passed on in milliseconds, truncated
    /// toward zero. Below 1000 there is no limit but the transport's own on connecting, 300 seconds
    /// with libcurl.
    std::int64_t timeout = 0;
    /// Whether redirects are followed. A POST stays a POST.
    bool followRedirects = false;
    /// How many redirects are followed before the call ends as `ErrorCode::TooManyRedirects`; -1 is
    /// no limit.
    std::int32_t maxRedirects = 0;
    /// Minimum time between two calls of `onProgress`, in microseconds.
    std::int64_t progressInterval = 0;
    /// URL of a proxy, with scheme, host and port, of which host and port are used; empty for none.
    std::string proxy;
    /// Polled at every piece of data, and about once a second while none arrives; true ends the
    /// transfer as `ErrorCode::RequestCancelled`. Must be safe to call from the thread that made
    /// the call. May be empty.
    std::function<bool()> isCancelled;
    /// Progress of the download, in bytes as transferred, before they are decompressed: at most
    /// once in `progressInterval`, only if the announced total is at least 1024, and only when the
    /// count has changed. May be empty.
    std::function<void(std::int64_t downloaded, std::int64_t total)> onProgress;
    /// Sink of the response body. If set, it gets every piece as it arrives and `Response::body`
    /// stays empty. May be empty.
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
        std::string contentType;
    };

    /// In the order in which they are sent.
    std::vector<Part> parts;
};

/// The clients that `createHttpClient` makes.
enum class HttpClientType : std::int32_t {
    Cpr = 0,   ///< `CprHttpClient`, which performs requests over the network.
    Stub = 1,  ///< A client without network traffic.
};

}  // namespace Ostrel::Networking
