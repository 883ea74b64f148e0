#include <atomic>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "Networking/CookieJar/CookieJar.h"
#include "Networking/CreateHttpClient.h"
#include "examples/LocalServer.h"

namespace Ostrel::Networking {
namespace {

/// Calls `onCall` before it passes a GET on.
class Announcing final : public ClientAdapter {
public:
    Announcing(std::shared_ptr<IHttpClient> const& client, std::function<void()> onCall)
        : ClientAdapter(client), onCall_(std::move(onCall)) {}

private:
    Response perform(Request const& request, Options const& options,
                     Operation const& operation) override {
        onCall_();
        return operation(client(), request, options);
    }

    std::function<void()> onCall_;
};

TEST(ChainTest, RemembersCookiesOverAttemptsThatTimeOut) {
    std::atomic<bool> isLastAttempt{false};
    LocalServer server([&](auto const& request, auto& response) {
        if (request.path == "/login") {
            response.set_header("Set-Cookie", "sid=7; Path=/");
        } else if (request.path == "/late" && !isLastAttempt) {
            server.stall();
        }
        response.set_content("for " + request.get_header_value("Cookie"), "text/plain");
    });
    auto const jar = std::make_shared<CookieJar>();
    std::shared_ptr<IHttpClient> const session =
        addCookieJarAdapter(createHttpClient(HttpClientType::Cpr), jar);
    auto const last = std::make_shared<Announcing>(session, [&] { isLastAttempt = true; });
    constexpr std::int64_t SHORT = 100'000;
    constexpr std::int64_t LONG = 20'000'000;
    auto const chain =
        addRetriesAdapter(session, {{SHORT, nullptr}, {SHORT, nullptr}, {LONG, last}});
    Request request;

    request.url = server.url("/login?user=a");
    EXPECT_EQ(addRetriesAdapter(session, {{LONG, nullptr}})->post(request, "pw", {}).statusCode,
              200);
    request.url = server.url("/late");
    auto const response = chain->get(request, {});

    EXPECT_EQ(response.error.code, ErrorCode::Ok);
    EXPECT_EQ(response.body, "for sid=7;");
    EXPECT_EQ(jar->cookiesForUrl(request.url).size(), 1U);
    auto const requests = server.requests();
    ASSERT_GE(requests.size(), 2U);  // An attempt may have ended before the server saw it.
    EXPECT_FALSE(requests[0].has_header("Cookie"));
    for (std::size_t i = 1; i < requests.size(); ++i) {
        EXPECT_EQ(requests[i].path, "/late");
        EXPECT_EQ(requests[i].get_header_value("Cookie"), "sid=7;");
    }
}

TEST(ChainTest, ServesManyThreadsWhileTheJarIsEditedAndCallsAreCancelled) {
    constexpr int THREADS = 16;
    constexpr int CALLS = 25;
    LocalServer server([](auto const& request, auto& response) {
        response.set_header("Set-Cookie", "last=" + request.path.substr(1));
        // Of a type that the server does not compress: libcurl 7.88 leaks the state of its decoder
        // if a call is cancelled at its very end.
        response.set_content(request.path, "application/octet-stream");
    });
    auto const jar = std::make_shared<CookieJar>();
    auto const chain = addRetriesAdapter(
        addCookieJarAdapter(addForceProtocolAdapter(createHttpClient(HttpClientType::Cpr),
                                                    ForceProtocolSettings::Http),
                            jar),
        {{5'000'000, nullptr}, {20'000'000, nullptr}});
    std::atomic<bool> isCancelled{false};
    std::atomic<bool> isOver{false};
    std::thread editor([&] {
        std::mt19937 random(1);
        while (!isOver) {
            Cookie const cookie{std::to_string(random() % 8), "v", Url(server.url())};
            random() % 2 == 0 ? jar->insertCookie(cookie) : (void)jar->deleteCookie(cookie);
            isCancelled = random() % 8 == 0;
        }
    });
    std::vector<std::thread> callers;
    callers.reserve(THREADS);
    for (int thread = 0; thread < THREADS; ++thread) {
        callers.emplace_back([&, thread] {
            Options options;
            options.isCancelled = [&isCancelled] { return isCancelled.load(); };
            Request request;
            request.url = "https" + server.url("/" + std::to_string(thread)).substr(4);
            for (int i = 0; i < CALLS; ++i) {
                auto const response = chain->get(request, options);
                EXPECT_THAT(response.error.code,
                            ::testing::AnyOf(ErrorCode::Ok, ErrorCode::RequestCancelled));
                if (response.error.code == ErrorCode::Ok) {
                    EXPECT_EQ(response.body, request.url.path());
                }
            }
        });
    }
    for (auto& caller : callers) {
        caller.join();
    }
    isOver = true;
    editor.join();
    isCancelled = false;
    Request request;
    request.url = server.url("/end");
    EXPECT_EQ(chain->get(request, {}).body, "/end");
    EXPECT_LE(jar->cookiesForUrl(Url(server.url())).size(), 9U);
}

}  // namespace
}  // namespace Ostrel::Networking
