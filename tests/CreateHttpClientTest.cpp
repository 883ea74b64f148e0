#include "Networking/CreateHttpClient.h"

#include <future>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "examples/LocalServer.h"
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
        auto const r = operation.call(*stub, Request(), options);
        EXPECT_EQ(r.error.code, ErrorCode::Ok);
        EXPECT_EQ(r.statusCode, 0);
        EXPECT_EQ(r.error.message, "");
        EXPECT_EQ(r.statusLine, "");
        EXPECT_EQ(r.reason, "");
        EXPECT_EQ(r.body, "");
        EXPECT_TRUE(r.headers.empty());
        EXPECT_TRUE(r.cookies.empty());
    }
}

TEST(ChainTest, ServesManyThreads) {
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "a=b");
        response.set_content(request.path + request.get_header_value("Cookie"), "text/plain");
    });
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), nullptr), {{20'000'000, {}}});
    std::vector<std::future<void>> callers;
    for (std::string const path : {"/0", "/1", "/2", "/3"}) {
        callers.push_back(std::async(std::launch::async, [&, path] {
            for (int i = 0; i < 10; ++i) {
                auto const body = chain->get(Testing::requestFor(server.url(path)), {}).body;
                EXPECT_EQ(body.substr(0, i == 0 ? 2 : 5), path + (i == 0 ? "" : "a=b"));
            }
        }));
    }
}

}  // namespace
}  // namespace Ostrel::Networking
