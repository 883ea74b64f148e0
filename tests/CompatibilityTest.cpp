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

#define OUTCOME(name, code) \
    { static_cast<int>(Outcome::name), ErrorCode::code }

/// A template so that only a release that has these names compiles them.
template <typename Outcome>
void expectEverySingleOutcomeConverted() {
    if constexpr (!HasGroupedOutcomes<Outcome>::value) {
        std::map<int, ErrorCode> special = {
            OUTCOME(OK, Ok),
            OUTCOME(COULDNT_CONNECT, ConnectionFailure),
            OUTCOME(GOT_NOTHING, EmptyResponse),
            OUTCOME(COULDNT_RESOLVE_HOST, HostResolutionFailure),
            OUTCOME(URL_MALFORMAT, InvalidUrlFormat),
            OUTCOME(RECV_ERROR, NetworkReceiveError),
            OUTCOME(SEND_ERROR, NetworkSendFailure),
            OUTCOME(OPERATION_TIMEDOUT, OperationTimedOut),
            OUTCOME(COULDNT_RESOLVE_PROXY, ProxyResolutionFailure),
            OUTCOME(SSL_CONNECT_ERROR, SslConnectError),
            OUTCOME(SSL_CERTPROBLEM, SslLocalCertificateError),
            OUTCOME(PEER_FAILED_VERIFICATION, SslRemoteCertificateError),
            OUTCOME(SSL_CACERT_BADFILE, GenericSslError),
            OUTCOME(SSL_CRL_BADFILE, GenericSslError),
            OUTCOME(SSL_ISSUER_ERROR, GenericSslError),
            OUTCOME(SSL_ENGINE_NOTFOUND, GenericSslError),
            OUTCOME(SSL_ENGINE_SETFAILED, GenericSslError),
            OUTCOME(SSL_ENGINE_INITFAILED, GenericSslError),
            OUTCOME(SSL_CIPHER, GenericSslError),
            OUTCOME(USE_SSL_FAILED, GenericSslError),
            OUTCOME(SSL_SHUTDOWN_FAILED, GenericSslError),
            OUTCOME(UNSUPPORTED_PROTOCOL, UnsupportedProtocol),
            OUTCOME(ABORTED_BY_CALLBACK, RequestCancelled),
            OUTCOME(WRITE_ERROR, RequestCancelled),
            OUTCOME(TOO_MANY_REDIRECTS, TooManyRedirects),
            OUTCOME(UNKNOWN_ERROR, UnknownError)};
        if (CPR_VERSION_NUM == 0x10b00) {  // This release reports a body cut short in this way.
            special[static_cast<int>(Outcome::UNKNOWN_ERROR)] = ErrorCode::InternalError;
        }
        for (int value = -3; value <= 1003; ++value) {
            auto const found = special.find(value);
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
