#include <cctype>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Networking/Cpr/ResponseHead.h"
#include "Networking/Response.h"
#include "Networking/Types.h"
#include "Ostrel/NotNull.h"

namespace Ostrel::Networking {
namespace {

TEST(CaseInsensitiveCompareTest, OrdersByLowerCase) {
    std::vector<std::string> const lower = {"", "_", "a", "ab", "abc", "b", "z", "\x80", "\xff"};
    std::vector<std::string> const upper = {"", "_", "A", "AB", "ABC", "B", "Z", "\x80", "\xff"};
    for (std::size_t i = 0; i < lower.size(); ++i) {
        for (std::size_t j = 0; j < lower.size(); ++j) {
            EXPECT_EQ(CaseInsensitiveCompare()(lower[i], upper[j]), i < j) << lower[i] << upper[j];
            EXPECT_EQ(CaseInsensitiveCompare()(upper[i], lower[j]), i < j) << upper[i] << lower[j];
        }
    }
    EXPECT_TRUE(CaseInsensitiveCompare()("\xc4", "\xe4")) << "of no letter";
}

TEST(CaseInsensitiveCompareTest, IsTheSameInATurkishLocale) {
    // "I" is not the capital letter of "i" there.
    setenv("LOCPATH", TURKISH_LOCALE_DIRECTORY, 1);
    ASSERT_NE(std::setlocale(LC_ALL, "tr_TR.UTF-8"), nullptr);
    ASSERT_NE(std::tolower('I'), 'i');
    Request const request{Url(), {{"X-REQUEST-ID", "1"}, {"x-request-id", "2"}}};
    auto const head = readResponseHead(
        "HTTP/1.1 302 A: b\r\nTRANSFER-ENCODING: chunked\r\n\r\nHTTP/1.1 500 Evil: trailer\r\n",
        true);
    std::setlocale(LC_ALL, "C");

    EXPECT_EQ(request.headers.size(), 1U);
    EXPECT_EQ(head.statusLine, "HTTP/1.1 302 A: b");
}

TEST(NotNullTest, HoldsWhatConvertsAndIsNeverEmpty) {
    using Held = NotNull<std::shared_ptr<int const>>;
    auto const pointer = std::make_shared<int>(7);

    Held held = pointer;
    EXPECT_EQ(held.get(), pointer);
    EXPECT_EQ(*Held(std::make_unique<int>(8)), 8);
    Held const moved(static_cast<Held&&>(held));
    EXPECT_EQ(held.get(), moved.get()) << "there is no move";
    EXPECT_THROW(Held(std::shared_ptr<int>()), std::invalid_argument);
}

void setTimeZone(std::string const& zone) {
    setenv("TZ", zone.c_str(), 1);
    tzset();
}

std::time_t lastModified(std::string const& date, std::string const& name = "Last-Modified",
                         ErrorCode code = ErrorCode::Ok) {
    return Response{304, "", {{name, date}}, {}, {code, ""}, "", ""}.getLastModified();
}

TEST(LastModifiedTest, ReadsTheFieldsAsStandardLocalTime) {
    constexpr std::time_t HOUR = 3600;
    std::vector<std::pair<std::string, std::time_t>> const rows = {
        {"XST-1XDT,M3.5.0,M10.5.0/3", -HOUR},  // As in Central Europe, with daylight saving.
        {"XST8XDT,M3.2.0,M11.1.0", 8 * HOUR},
    };
    for (auto const& [zone, offset] : rows) {
        setTimeZone(zone);
        EXPECT_EQ(lastModified("Tue, 15 Nov 1994 08:12:31 GMT"), 784887151 + offset) << zone;
        EXPECT_EQ(lastModified("Wed, 15 Jul 2020 08:12:31 GMT"), 1594800751 + offset) << zone;
    }
}

TEST(LastModifiedTest, NeedsACompletedTransferAndTheHeaderAndUsesTheFieldsBeforeAFault) {
    setTimeZone("UTC0");
    constexpr std::time_t DAY = 86400;
    constexpr std::time_t YEAR_1900 = -2208988800;
    // 31 December 1899, for which macOS has no result.
    std::tm noFields{};
    auto const dayZero = std::mktime(&noFields);
    std::vector<std::pair<std::string, std::time_t>> const rows = {
        {"", dayZero},
        {"Tue, 15 Nuv 1994 08:12:31 GMT", YEAR_1900 + 14 * DAY},
        {"Tue, 15 Nov 1994 08:12:31 Nowhere", 784887151},
    };
    for (auto const& [date, expected] : rows) {
        EXPECT_EQ(lastModified(date), expected) << date;
        EXPECT_EQ(lastModified(date, "last-MODIFIED"), expected);
        EXPECT_EQ(lastModified(date, "Date"), 0);
        EXPECT_EQ(lastModified(date, "Last-Modified", ErrorCode::NotPerformed), 0);
    }
}

}  // namespace
}  // namespace Ostrel::Networking
