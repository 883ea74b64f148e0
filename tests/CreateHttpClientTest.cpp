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

TEST(CreateHttpClientTest, MakesTheClientOfTheTypeOrThrows) {
    auto const cpr = createHttpClient(HttpClientType::Cpr);
    EXPECT_NE(dynamic_cast<CprHttpClient*>(cpr.get()), nullptr);
    EXPECT_THAT([] { (void)createHttpClient(static_cast<HttpClientType>(2)); },
                ::testing::ThrowsMessage<std::runtime_error>("Unknown HttpClientType provided"));
}

TEST(StubHttpClientTest, SucceedsAtOnceWithoutACallback) {
    auto const stub = createHttpClient(HttpClientType::Stub);
    Response const done{0, "", {}, {}, {ErrorCode::Ok, ""}, "", ""};
    Options options;
    options.isCancelled = [] { return ADD_FAILURE(), true; };
    options.onData = [](std::string const&) { ADD_FAILURE(); };
    options.onProgress = [](std::int64_t, std::int64_t) { ADD_FAILURE(); };
    for (auto const& operation : Testing::operations()) {
        auto const response = operation.call(*stub, Request(), options);
        EXPECT_EQ(Testing::fieldsOf(response), Testing::fieldsOf(done));
    }
}

TEST(ChainTest, ServesManyThreads) {
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "a=b");
        response.set_content(request.path, "text/plain");
    });
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), nullptr), {{20'000'000, {}}});
    std::vector<std::future<void>> callers;
    for (std::string const path : {"/0", "/1", "/2", "/3"}) {
        callers.push_back(std::async(std::launch::async, [&, path] {
            for (int i = 0; i < 10; ++i) {
                EXPECT_EQ(chain->get(Testing::requestFor(server.url(path)), {}).body, path);
            }
        }));
    }
}

}  // namespace Ostrel::Networking
