#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

#include <cpr/cpr.h>

#include "Networking/Response.h"

/// Private: not installed. Differences between the releases of libcpr, 1.9 to 1.15. Features are
/// detected by type, because the version macro of several releases is wrong. The functions are
/// templates over a type of libcpr so that only the branch that fits is compiled.
namespace Ostrel::Networking::Compatibility {

/// `limit` in bytes per second, `time` in seconds. Release 1.12 made the time a duration.
template <typename LowSpeed = cpr::LowSpeed>
LowSpeed lowSpeed(std::int32_t limit, std::int32_t time) {
    if constexpr (std::is_constructible_v<LowSpeed, std::int32_t, std::chrono::seconds>) {
        return LowSpeed(limit, std::chrono::seconds(time));
    } else {
        return LowSpeed(limit, time);
    }
}

/// Up to release 1.10 libcpr groups the codes of libcurl into 19 outcomes; from 1.11 on it has one
/// for each code.
template <typename Outcome, typename = void>
struct HasGroupedOutcomes : std::false_type {};
template <typename Outcome>
struct HasGroupedOutcomes<Outcome, std::void_t<decltype(Outcome::CONNECTION_FAILURE)>>
    : std::true_type {};

/// Throws `std::runtime_error` for a value that the release does not define. The text is fixed, as
/// it is spelled.
[[noreturn]] inline void refuseOutcome() {
    throw std::runtime_error("Uknown cpr::ErrorCode provided");
}

/// Releases up to 1.10 number their outcomes like `ErrorCode`, except that they have two values, 13
/// and 14, for what `GenericSslError` stands for.
inline ErrorCode errorCodeOfGrouped(std::int32_t outcome) {
    if ((outcome >= 0 && outcome <= 13) || outcome == 1000) {
        return static_cast<ErrorCode>(outcome);
    }
    if (outcome >= 14 && outcome <= 17) {
        return static_cast<ErrorCode>(outcome - 1);
    }
    refuseOutcome();
}

/// Groups the codes as libcpr did up to release 1.10. The switch has no default, so that the
/// compiler reports enumerators that a new release adds.
template <typename Outcome>
ErrorCode errorCodeOfSingle(Outcome outcome) {
    switch (outcome) {
        case Outcome::OK:
            return ErrorCode::Ok;
        case Outcome::COULDNT_CONNECT:
            return ErrorCode::ConnectionFailure;
        case Outcome::GOT_NOTHING:
            return ErrorCode::EmptyResponse;
        case Outcome::COULDNT_RESOLVE_HOST:
            return ErrorCode::HostResolutionFailure;
        case Outcome::URL_MALFORMAT:
            return ErrorCode::InvalidUrlFormat;
        case Outcome::RECV_ERROR:
            return ErrorCode::NetworkReceiveError;
        case Outcome::SEND_ERROR:
            return ErrorCode::NetworkSendFailure;
        case Outcome::OPERATION_TIMEDOUT:
            return ErrorCode::OperationTimedOut;
        case Outcome::COULDNT_RESOLVE_PROXY:
            return ErrorCode::ProxyResolutionFailure;
        case Outcome::SSL_CONNECT_ERROR:
            return ErrorCode::SslConnectError;
        case Outcome::SSL_CERTPROBLEM:
            return ErrorCode::SslLocalCertificateError;
        case Outcome::PEER_FAILED_VERIFICATION:
            return ErrorCode::SslRemoteCertificateError;
        case Outcome::SSL_CACERT_BADFILE:
        case Outcome::SSL_CRL_BADFILE:
        case Outcome::SSL_ISSUER_ERROR:
        case Outcome::SSL_ENGINE_NOTFOUND:
        case Outcome::SSL_ENGINE_SETFAILED:
        case Outcome::SSL_ENGINE_INITFAILED:
        case Outcome::SSL_CIPHER:
        case Outcome::USE_SSL_FAILED:
        case Outcome::SSL_SHUTDOWN_FAILED:
            return ErrorCode::GenericSslError;
        case Outcome::UNSUPPORTED_PROTOCOL:
            return ErrorCode::UnsupportedProtocol;
        case Outcome::ABORTED_BY_CALLBACK:
        case Outcome::WRITE_ERROR:
            return ErrorCode::RequestCancelled;
        case Outcome::TOO_MANY_REDIRECTS:
            return ErrorCode::TooManyRedirects;
#if CPR_VERSION_NUM == 0x10b00  // Correct for this release, 1.11.0.
        case Outcome::OBSOLETE46:
        case Outcome::UNKNOWN_ERROR:  // A body that was cut short, among others.
            return ErrorCode::InternalError;
#else
        case Outcome::UNKNOWN_ERROR:
            return ErrorCode::UnknownError;
#endif
        case Outcome::AGAIN:
        case Outcome::AUTH_ERROR:
        case Outcome::BAD_CONTENT_ENCODING:
        case Outcome::BAD_DOWNLOAD_RESUME:
        case Outcome::BAD_FUNCTION_ARGUMENT:
        case Outcome::CHUNK_FAILED:
        case Outcome::FAILED_INIT:
        case Outcome::FILE_COULDNT_READ_FILE:
        case Outcome::FILESIZE_EXCEEDED:
        case Outcome::FUNCTION_NOT_FOUND:
        case Outcome::HTTP2:
        case Outcome::HTTP2_STREAM:
        case Outcome::HTTP3:
        case Outcome::HTTP_POST_ERROR:
        case Outcome::HTTP_RETURNED_ERROR:
        case Outcome::INTERFACE_FAILED:
        case Outcome::LOGIN_DENIED:
        case Outcome::NO_CONNECTION_AVAILABLE:
        case Outcome::NOT_BUILT_IN:
        case Outcome::OUT_OF_MEMORY:
        case Outcome::PARTIAL_FILE:
        case Outcome::PROXY:
        case Outcome::QUIC_CONNECT_ERROR:
        case Outcome::QUOTE_ERROR:
        case Outcome::RANGE_ERROR:
        case Outcome::READ_ERROR:
        case Outcome::RECURSIVE_API_CALL:
        case Outcome::REMOTE_ACCESS_DENIED:
        case Outcome::SEND_FAIL_REWIND:
        case Outcome::SETOPT_OPTION_SYNTAX:
        case Outcome::SSL_CLIENTCERT:
        case Outcome::SSL_INVALIDCERTSTATUS:
        case Outcome::SSL_PINNEDPUBKEYNOTMATCH:
        case Outcome::TOO_LARGE:
        case Outcome::UNKNOWN_OPTION:
        case Outcome::UNRECOVERABLE_POLL:
        case Outcome::UPLOAD_FAILED:
        case Outcome::WEIRD_SERVER_REPLY:
            return ErrorCode::InternalError;
    }
    refuseOutcome();
}

/// The `ErrorCode` of a `cpr::ErrorCode`.
template <typename Outcome>
ErrorCode errorCodeOf(Outcome outcome) {
    if constexpr (HasGroupedOutcomes<Outcome>::value) {
        return errorCodeOfGrouped(static_cast<std::int32_t>(outcome));
    } else {
        return errorCodeOfSingle(outcome);
    }
}

}  // namespace Ostrel::Networking::Compatibility
