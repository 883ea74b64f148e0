#include "Networking/Cpr/Compatibility.h"

#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

namespace Ostrel::Networking::Compatibility {
namespace {

/// The outcomes of libcpr 1.9, under its names.
// NOLINTBEGIN(readability-identifier-naming)
enum class GroupedOutcome {
    OK = 0,
    CONNECTION_FAILURE,
    EMPTY_RESPONSE,
    HOST_RESOLUTION_FAILURE,
    INTERNAL_ERROR,
    INVALID_URL_FORMAT,
    NETWORK_RECEIVE_ERROR,
    NETWORK_SEND_FAILURE,
    OPERATION_TIMEDOUT,
    PROXY_RESOLUTION_FAILURE,
    SSL_CONNECT_ERROR,
    SSL_LOCAL_CERTIFICATE_ERROR,
    SSL_REMOTE_CERTIFICATE_ERROR,
    SSL_CACERT_ERROR,
    GENERIC_SSL_ERROR,
    UNSUPPORTED_PROTOCOL,
    REQUEST_CANCELLED,
    TOO_MANY_REDIRECTS,
    UNKNOWN_ERROR = 1000,
};
// NOLINTEND(readability-identifier-naming)

/// What `errorCodeOf` gives, or -1 with the fixed message.
template <typename Outcome>
int convert(int value) {
    try {
        return static_cast<int>(errorCodeOf(static_cast<Outcome>(value)));
    } catch (std::runtime_error const& error) {
        EXPECT_STREQ(error.what(), "Uknown cpr::ErrorCode provided");
        return -1;
    }
}

TEST(ErrorCodeTest, ConvertsEveryGroupedOutcome) {
    std::map<int, int> const changed = {{13, 13}, {14, 13}, {15, 14},
                                        {16, 15}, {17, 16}, {1000, 1000}};
    for (int value = -3; value <= 1003; ++value) {
        auto const found = changed.find(value);
        auto const expected = found != changed.end()      ? found->second
                              : value >= 0 && value <= 12 ? value
                                                          : -1;
        EXPECT_EQ(convert<GroupedOutcome>(value), expected) << value;
    }
}

/// A template so that only a release that has these names compiles them.
template <typename Outcome>
void expectEverySingleOutcomeConverted() {
    if constexpr (!HasGroupedOutcomes<Outcome>::value) {
        std::map<Outcome, ErrorCode> special = {
            {Outcome::OK, ErrorCode::Ok},
            {Outcome::COULDNT_CONNECT, ErrorCode::ConnectionFailure},
            {Outcome::GOT_NOTHING, ErrorCode::EmptyResponse},
            {Outcome::COULDNT_RESOLVE_HOST, ErrorCode::HostResolutionFailure},
            {Outcome::URL_MALFORMAT, ErrorCode::InvalidUrlFormat},
            {Outcome::RECV_ERROR, ErrorCode::NetworkReceiveError},
            {Outcome::SEND_ERROR, ErrorCode::NetworkSendFailure},
            {Outcome::OPERATION_TIMEDOUT, ErrorCode::OperationTimedOut},
            {Outcome::COULDNT_RESOLVE_PROXY, ErrorCode::ProxyResolutionFailure},
            {Outcome::SSL_CONNECT_ERROR, ErrorCode::SslConnectError},
            {Outcome::SSL_CERTPROBLEM, ErrorCode::SslLocalCertificateError},
            {Outcome::PEER_FAILED_VERIFICATION, ErrorCode::SslRemoteCertificateError},
            {Outcome::UNSUPPORTED_PROTOCOL, ErrorCode::UnsupportedProtocol},
            {Outcome::ABORTED_BY_CALLBACK, ErrorCode::RequestCancelled},
            {Outcome::WRITE_ERROR, ErrorCode::RequestCancelled},
            {Outcome::TOO_MANY_REDIRECTS, ErrorCode::TooManyRedirects},
            {Outcome::UNKNOWN_ERROR, ErrorCode::UnknownError}};
        for (auto const outcome :
             {Outcome::SSL_CACERT_BADFILE, Outcome::SSL_CRL_BADFILE, Outcome::SSL_ISSUER_ERROR,
              Outcome::SSL_ENGINE_NOTFOUND, Outcome::SSL_ENGINE_SETFAILED, Outcome::SSL_CIPHER,
              Outcome::SSL_ENGINE_INITFAILED, Outcome::USE_SSL_FAILED,
              Outcome::SSL_SHUTDOWN_FAILED}) {
            special[outcome] = ErrorCode::GenericSslError;
        }
        if (CPR_VERSION_NUM == 0x10b00) {  // This release reports a body cut short in this way.
            special[Outcome::UNKNOWN_ERROR] = ErrorCode::InternalError;
        }
        for (int value = -3; value <= 1003; ++value) {
            auto const found = special.find(static_cast<Outcome>(value));
            auto const isDefined = value >= 0 && value <= static_cast<int>(Outcome::TOO_LARGE);
            auto const expected = found != special.end() ? static_cast<int>(found->second)
                                  : isDefined ? static_cast<int>(ErrorCode::InternalError)
                                              : -1;
            EXPECT_EQ(convert<Outcome>(value), expected) << value;
        }
    }
}

TEST(ErrorCodeTest, ConvertsEveryOutcomeOfTheInstalledRelease) {
    if (HasGroupedOutcomes<cpr::ErrorCode>::value) {
        GTEST_SKIP() << "this release groups its outcomes";
    }
    expectEverySingleOutcomeConverted<cpr::ErrorCode>();
}

TEST(LowSpeedTest, TakesTheTimeInTheFormOfTheRelease) {
    struct Old {
        Old(std::int32_t l, std::int32_t t) : limit(l), time(t) {}
        std::int32_t limit, time;
    };
    EXPECT_EQ(lowSpeed<Old>(100, 30).time, 30);
    EXPECT_EQ(lowSpeed<Old>(100, 30).limit, 100);
    EXPECT_EQ(lowSpeed(100, 30).limit, 100);
}

}  // namespace
}  // namespace Ostrel::Networking::Compatibility
