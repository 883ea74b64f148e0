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
        EXPECT_TRUE(r.statusCode == 0 && r.error.message.empty() && r.body.empty() &&
                    r.headers.empty() && r.cookies.empty() && r.statusLine.empty() &&
                    r.reason.empty());
    }
}

TEST(ChainTest, ServesManyThreads) {
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "last=" + request.path.substr(1));
        response.set_content(request.path + request.get_header_value("Cookie"), "text/plain");
    });
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                    ForceProtocolSettings::Http),
                            nullptr),
        {{20'000'000, nullptr}});
    std::vector<std::future<void>> callers;
    for (int caller = 0; caller < 4; ++caller) {
        callers.push_back(std::async(std::launch::async, [&, path = "/" + std::to_string(caller)] {
            auto const request = Testing::requestFor("https" + server.url(path).substr(4));
            for (int i = 0; i < 10; ++i) {
                auto const body = chain->get(request, {}).body;
                EXPECT_EQ(body.substr(0, i == 0 ? 2 : 7), path + (i == 0 ? "" : "last="));
            }
        }));
    }
}

}  // namespace
}  // namespace Ostrel::Networking
