#include "Networking/CreateHttpClient.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "tests/Support/Operations.h"

namespace Ostrel::Networking {
namespace {

TEST(CreateHttpClientTest, MakesTheClientOfTheTypeOrThrows) {
    auto const cpr = createHttpClient(HttpClientType::Cpr);
    EXPECT_NE(dynamic_cast<CprHttpClient*>(cpr.get()), nullptr);
    for (auto const type : {2, -1}) {
        EXPECT_THAT(
            [type] { (void)createHttpClient(static_cast<HttpClientType>(type)); },
            ::testing::ThrowsMessage<std::runtime_error>("Unknown HttpClientType provided"));
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
