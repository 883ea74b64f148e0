#include "Networking/Response.h"

#include <cstdlib>
#include <ctime>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace Ostrel::Networking {
namespace {

void setTimeZone(std::string const& zone) {
    setenv("TZ", zone.c_str(), 1);
    tzset();
}

std::time_t lastModified(std::string const& date, std::string const& name = "Last-Modified",
                         ErrorCode code = ErrorCode::Ok) {
    Response response;
    response.error.code = code;
    response.headers = {{name, date}};
    return response.getLastModified();
}

TEST(LastModifiedTest, ReadsTheFieldsAsStandardLocalTime) {
    constexpr std::time_t HOUR = 3600;
    std::string const winter = "Tue, 15 Nov 1994 08:12:31 GMT";
    std::string const summer = "Wed, 15 Jul 2020 08:12:31 GMT";
    std::vector<std::tuple<std::string, std::time_t>> const rows = {
        {"UTC0", 0},
        {"XST-1XDT,M3.5.0,M10.5.0/3", -HOUR},  // As in Central Europe, with daylight saving.
        {"XST8XDT,M3.2.0,M11.1.0", 8 * HOUR},
        {"XST-5:30", -(5 * HOUR + HOUR / 2)},
    };
    for (auto const& [zone, offset] : rows) {
        SCOPED_TRACE(zone);
        setTimeZone(zone);
        EXPECT_EQ(lastModified(winter), 784887151 + offset);
        EXPECT_EQ(lastModified(summer), 1594800751 + offset);
    }
}

TEST(LastModifiedTest, NeedsASuccessfulTransferAndTheHeader) {
    setTimeZone("UTC0");
    std::string const date = "Tue, 15 Nov 1994 08:12:31 GMT";
    EXPECT_EQ(lastModified(date, "last-modified"), 784887151);
    EXPECT_EQ(lastModified(date, "LAST-MODIFIED"), 784887151);
    EXPECT_EQ(lastModified(date, "Date"), 0);
    EXPECT_EQ(lastModified(date, "Last-Modified", ErrorCode::OperationTimedOut), 0);
    EXPECT_EQ(lastModified(date, "Last-Modified", ErrorCode::NotPerformed), 0);
}

TEST(LastModifiedTest, UsesTheFieldsBeforeAFault) {
    setTimeZone("UTC0");
    std::tm none{};
    std::tm dayOnly{};
    dayOnly.tm_mday = 15;
    std::tm dayAndMonth = dayOnly;
    dayAndMonth.tm_mon = 10;
    std::vector<std::tuple<std::string, std::tm>> const rows = {
        {"", none},
        {"yesterday", none},
        {"Tue, 15 Nuv 1994 08:12:31 GMT", dayOnly},
        {"Tue, 15 Nov", dayAndMonth},
    };
    for (auto [date, fields] : rows) {
        EXPECT_EQ(lastModified(date), std::mktime(&fields)) << date;
    }
    EXPECT_EQ(lastModified("Tue, 15 Nov 1994 08:12:31 Nowhere"), 784887151);
    EXPECT_EQ(lastModified("Tue, 15 Nov 1994 08:12:31"), 784887151);
}

}  // namespace
}  // namespace Ostrel::Networking
