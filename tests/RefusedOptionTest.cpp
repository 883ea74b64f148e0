#include <cstdarg>
#include <stdexcept>
#include <string>
#include <vector>

#include <curl/curl.h>
#include <dlfcn.h>
#include <gmock/gmock.h>

#include "tests/Support/Operations.h"
#include "tests/Support/RawServer.h"

#undef curl_easy_setopt

namespace {

// By number: deprecated, or unknown to older headers.
constexpr auto PROTOCOLS = static_cast<CURLoption>(181);
constexpr auto REDIR_PROTOCOLS = static_cast<CURLoption>(182);
constexpr auto QUICK_EXIT = static_cast<CURLoption>(322);

constexpr auto NONE = CURLOPT_LASTENTRY;
CURLoption REFUSED_OPTION = NONE;

}  // namespace

/// Replaces libcurl's function in the test program: refuses one option, as a libcurl does that is
/// older than the option.
extern "C" CURLcode curl_easy_setopt(CURL* handle, CURLoption option, ...) {
    if (option == REFUSED_OPTION) {
        return CURLE_UNKNOWN_OPTION;
    }
    va_list arguments;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"  // libcurl's own function has this parameter.
    va_start(arguments, option);
#pragma GCC diagnostic pop
    auto* const value = va_arg(arguments, void*);
    va_end(arguments);
    using Function = CURLcode (*)(CURL*, CURLoption, ...);
    static auto const real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "curl_easy_setopt"));
    return real(handle, option, value);
}

namespace Ostrel::Networking {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::EndsWith;
using ::testing::Not;
using ::testing::StartsWith;

TEST(RefusedOptionTest, EndsTheCallIfAPromiseStandsOnIt) {
    Testing::RawServer server(Testing::answering(Testing::EMPTY_OK));
    for (auto const option :
         {CURLOPT_PROXY, CURLOPT_NOPROXY, CURLOPT_SUPPRESS_CONNECT_HEADERS, CURLOPT_NOSIGNAL,
          PROTOCOLS, REDIR_PROTOCOLS, CURLOPT_COOKIE, CURLOPT_READFUNCTION, CURLOPT_READDATA}) {
        REFUSED_OPTION = option;
        EXPECT_THROW((void)Testing::get(server.url()), std::runtime_error) << option;
    }
    REFUSED_OPTION = NONE;
    EXPECT_EQ(server.connections(), 0);
}

TEST(RefusedOptionTest, SendsNothingElseInPlaceOfABodyThatWasNotCopied) {
    std::vector<std::string> requests;
    {
        Testing::RawServer server(Testing::answering(Testing::EMPTY_OK, &requests));
        REFUSED_OPTION = CURLOPT_COPYPOSTFIELDS;
        auto const request = Testing::requestFor(server.url());
        auto const response = CprHttpClient().post(request, "body", Testing::patient());
        REFUSED_OPTION = NONE;
        EXPECT_EQ(response.error.code, ErrorCode::InternalError);
    }
    EXPECT_THAT(requests, Each(AllOf(Not(StartsWith("GET")), Not(EndsWith("body")))));
}

TEST(RefusedOptionTest, DoesNotMatterIfItIsAComfort) {
    Testing::RawServer server(Testing::answering(Testing::EMPTY_OK));
    REFUSED_OPTION = QUICK_EXIT;
    EXPECT_EQ(Testing::get(server.url()).error.code, ErrorCode::Ok);
    REFUSED_OPTION = NONE;
}

}  // namespace Ostrel::Networking
