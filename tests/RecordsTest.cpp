#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/Response.h"
#include "Networking/Types.h"
#include "Ostrel/NotNull.h"

namespace Ostrel::Networking {
namespace {

TEST(CaseInsensitiveCompareTest, OrdersByLowerCase) {
    std::vector<std::tuple<std::string, std::string, bool>> const rows = {
        {"", "", false},
        {"", "x", true},
        {"x", "", false},
        {"ab", "ABC", true},
        {"ABC", "ab", false},
        {"a", "B", true},
        {"B", "a", false},
        {"Last-Modified", "last-modified", false},
        {"last-modified", "Last-Modified", false},
        {"z", "\x80", true},
        {"\xc4", "\xe4", true},
        {"\xe4", "\xc4", false},
    };
    for (auto const& [a, b, expected] : rows) {
        EXPECT_EQ(CaseInsensitiveCompare()(a, b), expected) << a << " < " << b;
    }

    Request request;
    request.headers.emplace("Content-Type", "first");
    request.headers.emplace("content-type", "second");
    EXPECT_EQ(request.headers.size(), 1U);
    EXPECT_EQ(request.headers["CONTENT-TYPE"], "first");
}

TEST(NotNullTest, HoldsWhatConvertsAndRefusesNothing) {
    struct Base {
        int value = 7;
    };
    struct Derived : Base {};
    auto const derived = std::make_shared<Derived>();

    NotNull<std::shared_ptr<Base>> const held = derived;
    EXPECT_EQ(held.get(), derived);
    EXPECT_EQ(held->value, 7);
    EXPECT_EQ((*held).value, 7);
    EXPECT_EQ(NotNull<std::shared_ptr<Base>>(std::make_unique<Derived>())->value, 7);
    EXPECT_THROW(NotNull<std::shared_ptr<Base>>(std::shared_ptr<Derived>()), std::invalid_argument);
    EXPECT_THROW(NotNull<std::shared_ptr<Base>>(nullptr), std::invalid_argument);
}

}  // namespace
}  // namespace Ostrel::Networking
