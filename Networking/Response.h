#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <string>

#include "Networking/Export.h"
#include "Networking/Types.h"

namespace Ostrel::Networking {

/// How a transfer ended. A response with an HTTP error status is a completed transfer: `Ok`.
enum class ErrorCode : std::int32_t {
    Ok = 0,                          ///< Completed; see `Response::body`.
    ConnectionFailure = 1,           ///< No connection could be made.
    EmptyResponse = 2,               ///< The server sent no response.
    HostResolutionFailure = 3,       ///< The host name could not be resolved.
    InternalError = 4,               ///< Failure in the transport, or a malformed response.
    InvalidUrlFormat = 5,            ///< The transport rejected the URL, such as one with a blank.
    NetworkReceiveError = 6,         ///< Failure while receiving.
    NetworkSendFailure = 7,          ///< Failure while sending.
    OperationTimedOut = 8,           ///< Time limit reached, or too slow for too long.
    ProxyResolutionFailure = 9,      ///< The proxy's name could not be resolved, or is none.
    SslConnectError = 10,            ///< The TLS handshake failed.
    SslLocalCertificateError = 11,   ///< Problem with the local client certificate.
    SslRemoteCertificateError = 12,  ///< The peer's certificate was not accepted.
    GenericSslError = 13,            ///< Any other TLS failure.
    UnsupportedProtocol = 14,        ///< Unsupported protocol, or the response is not HTTP.
    RequestCancelled = 15,           ///< Ended by `isCancelled`, or bytes follow a compressed body.
    TooManyRedirects = 16,           ///< More redirects than allowed.
    UnknownError = 1000,             ///< Any other failure of the transport.
    NotPerformed = 1001,             ///< Nothing was sent.
};

/// Outcome of a transfer.
struct Error {
    /// `NotPerformed` until a client sets it.
    ErrorCode code = ErrorCode::NotPerformed;
    /// The transport's text, or why the request was refused. May be empty after a failure, and may
    /// be set after a success: only `code` tells which it was.
    std::string message;
};

/// The result of one call. Look at `error` first: a failed transfer may have a status code and part
/// of a body.
struct Response {
    /// HTTP status code of the last response received; 0 if there was none, or if a proxy refused a
    /// tunnel.
    ///
    /// If a redirect leads to a server that cannot be reached, it is the status of the redirect;
    /// the same applies to `headers`, `statusLine` and `reason`.
    std::int32_t statusCode = 0;

    /// Decompressed. Empty if `Options::onData` received it.
    ///
    /// After `ErrorCode::Ok` it has, as transferred, the announced length, except after a HEAD. A
    /// body without one ends with the connection, and the end of a compressed body is not checked:
    /// both may be cut short.
    std::string body;

    /// Headers of the last response received, name to value. If a name repeats, the first value is
    /// kept. Trailers are not included.
    std::map<std::string, std::string, CaseInsensitiveCompare> headers;

    /// Cookies that servers set during the call and that the transport accepted, name to value. If
    /// one is set again, the last value is kept; if two differ in host or path, the first in the
    /// transport's store is listed.
    ///
    /// Domain, path, expiry and flags are not kept. A cookie that a server deletes, with
    /// "Max-Age=0" for example, may still be listed.
    std::map<std::string, std::string> cookies;

    /// How the transfer ended.
    Error error;

    /// The status line of the last response received, such as "HTTP/1.1 200 OK".
    std::string statusLine;

    /// The text after the status code in `statusLine`; empty if there is none, as in HTTP/2.
    std::string reason;

    /// Returns the time in the header "Last-Modified", in seconds since the Unix epoch; 0 if there
    /// is none or the transfer failed.
    ///
    /// The date, which is in GMT (RFC 9110, section 5.6.7), is read as standard local time: the
    /// result is exact only if the process runs in UTC, elsewhere off by the zone's offset, the
    /// same all year.
    ///
    /// For a malformed date, returns the result of `mktime` for the fields before the error, which
    /// may be -1. Names of months and days are those of the global locale. Safe to call from
    /// several threads while neither locale nor time zone changes.
    [[nodiscard]] QORNETWORKING_EXPORT std::time_t getLastModified() const;
};

}  // namespace Ostrel::Networking
