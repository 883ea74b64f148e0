// The recipes of docs/cookbook/requests.md, and all programs that print the response to a request.

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "examples/BackgroundCall.h"
#include "examples/LocalServer.h"
#include "examples/RedirectingClient.h"
#include "tests/Support/Operations.h"
#include "tests/Support/ScriptedClient.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

TEST(RequestRecipes, ProgramsSendTheRequestAndPrintTheResult) {
    struct Row {
        std::string program;
        std::vector<std::string> arguments;  // The first follows the server's origin.
        std::string output;                  // Part of it.
    };
    std::string const link = "/a%20b?X-Key=K%2F2026&X-Sign=5f%2B&X-Date=1&a=2&a=%20+";
    auto const file = ::testing::TempDir() + "RecipeTest.file";
    for (auto row : std::vector<Row>{
             {"search", {"/", "1/2 + 50%"}, "GET /?q=1%2F2%20%2B%2050%25 "},
             {"open_link", {"/login?next=/home"}, "GET /login?next=/home "},
             {"open_link", {"/a#/b?c"}, "GET /a "},
             {"open_link", {"?token=YWJj=="}, "GET /?token=YWJj== "},
             {"open_link", {link}, "GET " + link + " "},
             {"background_call", {"/", "20"}, "GET / "},
             {"redirects", {"/old", "token"}, "GET /new?to=/home "},
             {"post_json", {"/", R"({"a": 1})"}, R"(POST / application/json {"a": 1})"},
             {"log_calls", {"/p;sid=s?a=b"}, "127.0.0.1/p: status 200, error 0, "},
             {"check_for_update", {"/", "Sat, 21 Nov 2026 10:00:00 GMT"}, "is a newer"},
             {"check_for_update", {"/", "Sun, 22 Nov 2026 10:00:00 GMT"}, "up to date"},
             {"download_file", {"/old", file}, "19 bytes\n"},
             {"networking_off", {"/"}, "GET / "},
             {"system_proxy", {"/"}, "GET / "},
         }) {
        SCOPED_TRACE(row.program + " " + row.output);
        LocalServer const server([](auto const& request, auto& response) {
            auto const type = request.get_header_value("Content-Type");
            auto const date = request.method == "HEAD" ? "Last-Modified" : "Date";
            response.set_header(date, "Sun, 22 Nov 2026 10:00:00 GMT");
            response.set_content(
                request.method + " " + request.target + " " + type + " " + request.body, "a/b");
            if (request.path == "/old") {
                response.set_redirect("/new?to=/home");
            }
        });
        row.arguments.front().insert(0, server.url(""));
        auto const outcome = run(row.program, row.arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.output, ::testing::HasSubstr(row.output));
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
        std::size_t secrets = 1;
    };
    std::string const page = "https://me@one.test/a/b";
    for (auto const& row : std::vector<Row>{
             {page, 301, "https://one.test/c", "get", "https://me@one.test/c"},
             {page, 302, "/c?d=/e", "get", "https://me@one.test/c?d=/e"},
             {page, 303, "c", "get", "https://me@one.test/a/c"},
             {page, 307, "?c", "post form", "https://me@one.test/a/b?c"},
             {page, 308, "//two.test/c", "post form", "https://two.test/c", 0},
             {page, 307, "https://me@one.test:1/c", "post form", "https://one.test:1/c", 0},
             {"http://one.test?b=c=d", 302, "e", "get", "http://one.test/e"},
             {"http://one.test", 302, "https://one.test/", "get", "https://one.test/", 0},
             {page, 302, "http://one.test/", "post form", page},
             {page, 302, "", "post form", page},
         }) {
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
        EXPECT_EQ(last.request.headers.size(), row.secrets);
        EXPECT_EQ(last.request.cookies.size(), row.secrets);
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
    auto const call = [&](Options const& options) {
        auto const end = isDestroyed.get_future().wait_for(std::chrono::seconds(10));
        EXPECT_EQ(end, std::future_status::ready) << "the destructor waits";
        return Testing::get(server.url(), options);
    };
    auto const deliver = [&](auto const&) { isDelivered = true; };
    std::make_unique<BackgroundCall>(call, Options(), deliver).reset();

    EXPECT_FALSE(BackgroundCall::waitForAll(std::chrono::seconds(0)));
    isDestroyed.set_value();
    EXPECT_TRUE(BackgroundCall::waitForAll(std::chrono::seconds(10)));
    EXPECT_FALSE(isDelivered);
}

}  // namespace Recipes
