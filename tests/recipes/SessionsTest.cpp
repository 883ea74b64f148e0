// The recipes of docs/cookbook/sessions.md.

#include <atomic>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include <Networking/CreateHttpClient.h>
#include <gmock/gmock.h>

#include "examples/HostCookieJar.h"
#include "examples/LocalServer.h"
#include "examples/TokenAdapter.h"
#include "tests/Support/RawServer.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

TEST(SessionRecipes, SendCookiesExactlyAsTheServerSetThem) {
    auto const file = ::testing::TempDir() + "RecipeTest.cookies";
    std::filesystem::remove(file);
    std::vector<std::string> requests;
    {
        Testing::RawServer const server(
            Testing::answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n"
                               "Set-Cookie: sid=s%3Aab+c/d==; Path=/; HttpOnly\r\n"
                               "Set-Cookie: theme=a%20b\r\n\r\n",
                               &requests));
        auto const url = server.url();
        EXPECT_EQ(run("cookie_session", {url, url, "ada", "secret"}).status, 0);
        EXPECT_EQ(run("separate_hosts", {url, url}).status, 0);
        EXPECT_EQ(run("stored_cookies", {url, file}).status, 0);
        EXPECT_EQ(run("stored_cookies", {url, file}).status, 0);
    }
    ASSERT_EQ(requests.size(), 6U);
    for (auto const second : {1U, 3U, 5U}) {
        EXPECT_THAT(requests[second],
                    ::testing::HasSubstr("\r\nCookie: sid=s%3Aab+c/d==; theme=a%20b\r\n"));
    }
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
}

TEST(HostCookieJarRecipe, KeepsCookiesOnTheirHostAndProtocol) {
    std::vector<std::string> const urls{"https://alpha.test", "https://alpha.test.eu",
                                        "https://alpha.tes", "http://alpha.test"};
    HostCookieJar jar;
    for (auto const& url : urls) {
        jar.insertCookie({"t_id", url, url});
    }
    for (auto const& url : urls) {
        auto const cookies = jar.cookiesForUrl(url + "/path");
        ASSERT_EQ(cookies.size(), 1U) << url;
        EXPECT_EQ(cookies.front().value, url);
    }
}

TEST(TokenAdapterRecipe, RefreshesOnceForAllThreads) {
    std::vector<std::future<Response>> calls(8);
    std::atomic<std::size_t> stale = 0;
    LocalServer server([&](auto const& request, auto& response) {
        auto const isFresh = request.get_header_value("Authorization") == "Bearer fresh 1";
        response.status = isFresh ? 200 : 401;
        if (!isFresh && ++stale < calls.size()) {
            server.stall();  // Until all threads have sent the stale token.
        }
        server.release();
    });
    std::atomic<int> refreshes = 0;
    auto const refresh = [&] { return "fresh " + std::to_string(++refreshes); };
    TokenAdapter client(createHttpClient(HttpClientType::Cpr), server.url(), "stale", refresh);
    for (auto& call : calls) {
        call = std::async(std::launch::async, [&] { return client.get({server.url()}, {}); });
    }
    for (auto& call : calls) {
        EXPECT_EQ(call.get().statusCode, 200);
    }
    EXPECT_EQ(refreshes, 1);
}

TEST(TokenAdapterRecipe, RepeatsACallOnceAndOnlyForItsOwnServer) {
    LocalServer const server([](auto const&, auto& response) { response.status = 401; });
    auto const get = [&server](std::string const& own, std::string const& fresh) {
        TokenAdapter client(createHttpClient(HttpClientType::Cpr), own, "old",
                            [=] { return fresh; });
        (void)client.get({server.url()}, {});
    };
    auto const port = std::to_string(server.port());
    get(server.url(), "new");
    get(server.url(), "");
    get("http://a.test:" + port, "new");
    get("https://127.0.0.1:" + port, "new");
    get("http://127.0.0.1:1", "new");

    std::vector<std::string> tokens;
    for (auto const& request : server.requests()) {
        tokens.push_back(request.get_header_value("Authorization"));
    }
    EXPECT_THAT(tokens,
                ::testing::ElementsAre("Bearer old", "Bearer new", "Bearer old", "", "", ""));
}

}  // namespace Recipes
