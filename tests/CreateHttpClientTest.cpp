#include "Networking/CreateHttpClient.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "Networking/Cpr/CprHttpClient.h"
#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

TEST(CreateHttpClientTest, MakesTheClientOfTheType) {
    auto const cpr = createHttpClient(HttpClientType::Cpr);
    auto const stub = createHttpClient(HttpClientType::Stub);

    EXPECT_NE(dynamic_cast<CprHttpClient*>(cpr.get()), nullptr);
    ASSERT_NE(stub, nullptr);
    EXPECT_EQ(dynamic_cast<CprHttpClient*>(stub.get()), nullptr);
}

TEST(CreateHttpClientTest, RefusesAnUnknownType) {
    for (auto const type : {2, -1}) {
        try {
            (void)createHttpClient(static_cast<HttpClientType>(type));
            ADD_FAILURE() << "no exception for " << type;
        } catch (std::runtime_error const& error) {
            EXPECT_STREQ(error.what(), "Unknown HttpClientType provided");
        }
    }
}

TEST(StubHttpClientTest, SucceedsAtOnceWithoutACallback) {
    auto const stub = createHttpClient(HttpClientType::Stub);
    Options options;
    options.isCancelled = [] { return ADD_FAILURE(), true; };
    options.onData = [](std::string const&) { ADD_FAILURE(); };
    options.onProgress = [](std::int64_t, std::int64_t) { ADD_FAILURE(); };
    for (auto const& operation : Testing::operations()) {
        auto const response = operation.call(*stub, Request(), options);
        EXPECT_EQ(response.error.code, ErrorCode::Ok);
        EXPECT_EQ(response.statusCode, 0);
        EXPECT_TRUE(response.error.message.empty() && response.body.empty() &&
                    response.headers.empty() && response.cookies.empty() &&
                    response.statusLine.empty() && response.reason.empty());
    }
}

}  // namespace
}  // namespace Ostrel::Networking
