#include "Networking/Cpr/Compatibility.h"

#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

namespace Ostrel::Networking::Compatibility {
namespace {

/// What `convert` returns, or -1 if it throws the fixed message.
template <typename Outcome>
int codeOf(ErrorCode (*convert)(Outcome), int value) {
    try {
        return static_cast<int>(convert(static_cast<Outcome>(value)));
    } catch (std::runtime_error const& error) {
        EXPECT_STREQ(error.what(), "Uknown cpr::ErrorCode provided");
        return -1;
    }
}

TEST(ErrorCodeTest, ConvertsEveryGroupedOutcome) {
    std::map<int, int> const expected = {{-1, -1},  {0, 0},       {1, 1},    {12, 12}, {13, 13},
                                         {14, 13},  {15, 14},     {16, 15},  {17, 16}, {18, -1},
                                         {999, -1}, {1000, 1000}, {1001, -1}};
    for (auto const& [value, code] : expected) {
        EXPECT_EQ(codeOf(errorCodeOfGrouped, value), code) << value;
    }
}

TEST(ErrorCodeTest, ConvertsEveryOutcomeOfTheInstalledRelease) {
    // Generic so that only a release that has these names compiles them.
    [](auto any) {
        using Outcome = decltype(any);
        if constexpr (!HasGroupedOutcomes<Outcome>::value) {
            std::map<ErrorCode, int> counts;  // How many outcomes each code stands for.
            for (int value = -3; value <= 1003; ++value) {
                auto const code = codeOf(errorCodeOf<Outcome>, value);
                auto const isDefined =
                    (value >= 0 && value <= static_cast<int>(Outcome::TOO_LARGE)) ||
                    value == static_cast<int>(Outcome::UNKNOWN_ERROR);
                EXPECT_EQ(code != -1, isDefined) << value;
                ++counts[static_cast<ErrorCode>(code)];
            }
            EXPECT_GT(counts[ErrorCode::InternalError], 30);
            EXPECT_EQ(counts[ErrorCode::GenericSslError], 9);
            EXPECT_EQ(counts[ErrorCode::RequestCancelled], 2);
            for (int value = 0; value <= static_cast<int>(ErrorCode::TooManyRedirects); ++value) {
                auto const code = static_cast<ErrorCode>(value);
                auto const isGroup = code == ErrorCode::InternalError ||
                                     code == ErrorCode::GenericSslError ||
                                     code == ErrorCode::RequestCancelled;
                EXPECT_EQ(counts[code] == 1, !isGroup) << value;
            }
        }
    }(cpr::ErrorCode());
}

}  // namespace
}  // namespace Ostrel::Networking::Compatibility
