#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "Networking/CookieJar/CookieJar.h"
#include "Networking/CreateHttpClient.h"
#include "examples/LocalServer.h"

namespace Ostrel::Networking {
namespace {

TEST(ChainTest, ServesManyThreadsWhileTheJarIsEditedAndCallsAreCancelled) {
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "last=" + request.path.substr(1));
        // Of a type that the server does not compress: libcurl 7.88 leaks the state of its decoder
        // if a call is cancelled at its very end.
        response.set_content(request.path + request.get_header_value("Cookie"),
                             "application/octet-stream");
    });
    auto const jar = std::make_shared<CookieJar>();
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                    ForceProtocolSettings::Http),
                            jar),
        {{5'000'000, nullptr}, {20'000'000, nullptr}});
    std::atomic<int> calls{0};
    Options options;
    options.isCancelled = [&calls] { return calls % 8 == 0; };
    std::vector<std::thread> callers(8);
    for (auto& caller : callers) {
        caller = std::thread([&, path = "/" + std::to_string(&caller - callers.data())] {
            Request const request{"https" + server.url(path).substr(4), {}, {}};
            for (int i = 0; i < 25; ++i) {
                ++calls;
                Cookie const cookie{std::to_string(i % 4), "v", request.url};
                i % 2 == 0 ? jar->insertCookie(cookie) : (void)jar->deleteCookie(cookie);
                auto const response = chain->get(request, options);
                if (response.error.code != ErrorCode::RequestCancelled) {
                    EXPECT_EQ(response.error.code, ErrorCode::Ok);
                    EXPECT_EQ(response.body.substr(0, path.size()), path);
                }
            }
        });
    }
    for (auto& caller : callers) {
        caller.join();
    }
    options.isCancelled = nullptr;
    EXPECT_THAT(chain->get({server.url("/end"), {}, {}}, options).body,
                ::testing::ContainsRegex("^/end.*last=[0-7]"));
}

}  // namespace
}  // namespace Ostrel::Networking
