#include <atomic>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "Networking/AddAdapter.h"
#include "Networking/CookieJar/CookieJar.h"
#include "Networking/CreateHttpClient.h"
#include "tests/Support/LocalServer.h"

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
    Testing::LocalServer server([&](auto const& request, auto& response) {
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

}  // namespace
}  // namespace Ostrel::Networking
