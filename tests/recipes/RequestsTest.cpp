// The recipes of docs/cookbook/requests.md.

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <Networking/CreateHttpClient.h>
#include <gmock/gmock.h>

#include "examples/BackgroundCall.h"
#include "examples/LocalServer.h"
#include "examples/RedirectingClient.h"
#include "tests/Support/ScriptedClient.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

TEST(RequestRecipes, ProgramsSendTheRequestAndPrintTheResult) {
    struct Row {
        std::string program;
        std::vector<std::string> arguments;  // The first follows the server's origin.
        std::string target;
        std::string output;  // A regular expression.
    };
    std::string const signedLink = "/a%20b?X-Key=K%2F2026&X-Sign=5f%2B&X-Date=1&a=2&a=%20+";
    std::vector<Row> const rows{
        {"search", {"/", "1/2 + 50%"}, "/?q=1%2F2%20%2B%2050%25", "^GET "},
        {"open_link", {"/login?next=/home"}, "/login?next=/home", "^GET "},
        {"open_link", {"/a#/b?c"}, "/a", "^GET "},
        {"open_link", {"?token=YWJj=="}, "/?token=YWJj==", "^GET "},
        {"open_link", {signedLink}, signedLink, "^GET "},
        {"background_call", {"/", "20"}, "/", "^GET "},
        {"redirects", {"/old", "token"}, "/new?to=/home", "^GET "},
        {"post_json", {"/", R"({"a": 1})"}, "/", R"(^POST application/json \{"a": 1\})"},
        {"log_calls", {"/p;sid=s?a=b"}, "/p;sid=s?a=b", "^127.0.0.1/p: status 200, error 0, "},
        {"check_for_update", {"/", "Sat, 21 Nov 2026 10:00:00 GMT"}, "/", "is a newer"},
        {"check_for_update", {"/", "Sun, 22 Nov 2026 10:00:00 GMT"}, "/", "up to date"},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.program + " " + row.target);
        LocalServer const server([](auto const& request, auto& response) {
            auto const type = request.get_header_value("Content-Type");
            auto const date = request.method == "HEAD" ? "Last-Modified" : "Date";
            response.set_header(date, "Sun, 22 Nov 2026 10:00:00 GMT");
            response.set_content(request.method + " " + type + " " + request.body, "text/plain");
            if (request.path == "/old") {
                response.set_redirect("/new?to=/home");
            }
        });
        row.arguments.front().insert(0, server.url(""));

        auto const outcome = run(row.program, row.arguments);

        ASSERT_FALSE(server.requests().empty());
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.output, ::testing::ContainsRegex(row.output));
        EXPECT_EQ(server.requests().back().target, row.target);
    }
}

static Response redirectTo(std::string const& location, int status) {
    auto const name = location.empty() ? "X-No-Location" : "Location";
    return {status, "", {{name, location}}, {}, {ErrorCode::Ok, ""}, "", ""};
}

TEST(RedirectingClientRecipe, FollowsAsTheStatusSaysWithoutGivingSecretsAway) {
    struct Row {
        std::string url;
        int status;
        std::string location;
        std::string lastOperation;
        std::string lastUrl;  // The same as `url` if the redirect is not followed.
        bool isTrusted;
    };
    std::string const page = "https://me@one.test/a/b";
    std::vector<Row> const rows{
        {page, 301, "https://one.test/c", "get", "https://me@one.test/c", true},
        {page, 302, "/c?d=/e", "get", "https://me@one.test/c?d=/e", true},
        {page, 303, "c", "get", "https://me@one.test/a/c", true},
        {page, 307, "?c", "post form", "https://me@one.test/a/b?c", true},
        {page, 308, "//two.test/c", "post form", "https://two.test/c", false},
        {page, 307, "https://me@one.test:1/c", "post form", "https://one.test:1/c", false},
        {"http://one.test?b=c=d", 302, "e", "get", "http://one.test/e", true},
        {"http://one.test", 302, "https://one.test/", "get", "https://one.test/", false},
        {page, 302, "http://one.test/", "post form", page, true},
        {page, 302, "mailto:c", "post form", page, true},
        {page, 302, "", "post form", page, true},
        {page, 404, "/c", "post form", page, true},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.url + " " + std::to_string(row.status) + " " + row.location);
        auto const inner = std::make_shared<Testing::ScriptedClient>();
        inner->answer(redirectTo(row.location, row.status));
        if (row.lastUrl != row.url) {
            inner->answer(Response());
        }
        Request const request{linkAsGiven(row.url), {{"X-Token", "a"}}, {{"sid", "b"}}};

        (void)RedirectingClient(inner).post(request, MultiPart(), {});

        auto const last = inner->calls().back();
        EXPECT_EQ(last.operation, row.lastOperation);
        EXPECT_EQ(last.request.url.toString(), row.lastUrl);
        EXPECT_EQ(last.request.headers.size(), row.isTrusted ? 1U : 0U);
        EXPECT_EQ(last.request.cookies.size(), row.isTrusted ? 1U : 0U);
    }
}

TEST(RedirectingClientRecipe, RepeatsHeadAndEndsALoopAfterTenRedirects) {
    auto const inner = std::make_shared<Testing::ScriptedClient>();
    for (auto call = 0; call < 11; ++call) {
        inner->answer(redirectTo("/", 302));
    }

    auto const response = RedirectingClient(inner).head({Url("http://one.test/")}, {});

    EXPECT_EQ(response.error.code, ErrorCode::TooManyRedirects);
    EXPECT_EQ(inner->calls().back().operation, "head");
}

TEST(BackgroundCallRecipe, EndsWithoutWaitingAndDeliversNothingAfterwards) {
    LocalServer server([&server](auto const&, auto&) { server.stall(); });
    std::promise<void> isDestroyed;
    auto isDelivered = false;
    auto window = std::make_unique<BackgroundCall>(
        [&](auto const& options) {
            isDestroyed.get_future().wait_for(std::chrono::seconds(10));
            return createHttpClient(HttpClientType::Cpr)->get({server.url()}, options);
        },
        Options(), [&](auto const&) { isDelivered = true; });

    window.reset();

    EXPECT_FALSE(BackgroundCall::waitForAll(std::chrono::seconds(0)));
    isDestroyed.set_value();
    EXPECT_TRUE(BackgroundCall::waitForAll(std::chrono::seconds(10)));
    EXPECT_FALSE(isDelivered);
}

}  // namespace Recipes
