// The recipes of docs/cookbook/requests.md.

#include <string>

#include <gtest/gtest.h>

#include "examples/LocalServer.h"
#include "tests/recipes/RunProgram.h"

namespace Recipes {

namespace {

TEST(SearchRecipe, SendsTextWithAnyCharacters) {
    LocalServer const server(
        [](auto const&, auto& response) { response.set_content("found", "text/plain"); });

    auto const outcome = run("search", {server.url(), "1/2 + 50%"});

    EXPECT_EQ(outcome.output, "found\n");
    EXPECT_EQ(server.requests().at(0).target, "/?q=1%2F2%20%2B%2050%25");
}

}  // namespace

}  // namespace Recipes
