#include "Networking/Cpr/TransferCallbacks.h"

#include <chrono>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Ostrel/Time/SteadyClock.h"

namespace Ostrel::Networking {
namespace {

constexpr auto HUGE_INTERVAL = std::numeric_limits<std::int64_t>::max();

using Reports = std::vector<std::pair<std::int64_t, std::int64_t>>;

void waitForTheClockToMove() {
    auto const before = Time::SteadyClock().Now();
    while (Time::SteadyClock().Now() == before) {
    }
}

/// Passes `events`, pairs of the downloaded and the total count, to one callback and returns the
/// reports made.
Reports reportsOf(std::int64_t interval, Reports const& events) {
    Reports reports;
    Options options;
    options.progressInterval = interval;
    options.onProgress = [&reports](std::int64_t downloaded, std::int64_t total) {
        reports.emplace_back(downloaded, total);
    };
    ProgressCallback callback(options);
    for (auto const& [downloaded, total] : events) {
        waitForTheClockToMove();
        EXPECT_TRUE(callback(total, downloaded, 0, 0, 0));
    }
    return reports;
}

TEST(ProgressCallbackTest, ReportsWithinItsLimits) {
    struct Row {
        std::string name;
        std::int64_t interval;
        Reports events;
        Reports reports;
    };
    std::vector<Row> const rows = {
        {"total too small", 0, {{10, 1023}}, {}},
        {"total large enough", 0, {{10, 1024}}, {{10, 1024}}},
        {"total unknown", 0, {{2000, 0}}, {}},
        {"negative totals count as unsigned", 0, {{5, -1}}, {{5, -1}}},
        {"nothing downloaded yet", 0, {{0, 4096}}, {}},
        {"same count twice", 0, {{5, 4096}, {5, 4096}, {6, 4096}}, {{5, 4096}, {6, 4096}}},
        {"a count that shrinks has changed", 0, {{5, 4096}, {4, 4096}}, {{5, 4096}, {4, 4096}}},
        {"a first report at once",
         Time::SteadyClock().Now() / 2,
         {{5, 4096}, {6, 4096}},
         {{5, 4096}}},
        {"interval without end", HUGE_INTERVAL, {{5, 4096}, {6, 4096}}, {}},
    };
    for (auto const& [name, interval, events, reports] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(reportsOf(interval, events), reports);
    }
}

TEST(ProgressCallbackTest, CountsAnEventThatTheIntervalSuppressed) {
    std::vector<std::int64_t> reports;
    Options options;
    options.onProgress = [&reports](std::int64_t now, std::int64_t) { reports.push_back(now); };
    ProgressCallback callback(options);
    auto const event = [&](std::int64_t interval, std::int64_t downloaded) {
        options.progressInterval = interval;
        waitForTheClockToMove();
        callback(4096, downloaded, 0, 0, 0);
    };

    event(0, 5);
    event(HUGE_INTERVAL, 6);
    event(0, 6);
    event(0, 7);
    EXPECT_EQ(reports, (std::vector<std::int64_t>{5, 7}));
}

TEST(ProgressCallbackTest, ReportsOnceInAnIntervalOfMicroseconds) {
    using std::chrono::steady_clock;
    constexpr auto FEW = std::chrono::milliseconds(4);
    constexpr auto MANY = 1000 * FEW;
    int reports = 0;
    Options options;
    options.progressInterval = 1000;
    options.onProgress = [&reports](std::int64_t, std::int64_t) { ++reports; };
    ProgressCallback callback(options);

    auto const start = steady_clock::now();
    for (int downloaded = 1; reports < 5 && steady_clock::now() - start < MANY; ++downloaded) {
        callback(4096, downloaded, 0, 0, 0);
    }
    auto const time = steady_clock::now() - start;
    EXPECT_EQ(reports, 5);
    EXPECT_GE(time, FEW);
    EXPECT_LT(time, MANY);
}

TEST(ProgressCallbackTest, AsksForCancellationOnEveryEventAfterTheReport) {
    std::string calls;
    Options options;
    options.isCancelled = [&calls] { return calls += 'c', calls.size() > 3; };
    options.onProgress = [&calls](std::int64_t, std::int64_t) { calls += 'p'; };
    ProgressCallback callback(options);

    EXPECT_TRUE(callback(0, 0, 0, 7, 0));
    EXPECT_TRUE(callback(4096, 5, 0, 0, 0));
    EXPECT_FALSE(callback(4096, 5, 0, 0, 0));
    EXPECT_EQ(calls, "cpcc");
}

TEST(WriteCallbackTest, MovesPiecesUntilCancelled) {
    std::vector<std::string> pieces;
    bool cancelled = false;
    Options options;
    options.isCancelled = [&cancelled] { return cancelled; };
    options.onData = [&pieces](std::string chunk) { pieces.push_back(std::move(chunk)); };
    WriteCallback callback(options);

    std::string chunk(100, 'x');
    auto const* const bytes = chunk.data();
    EXPECT_TRUE(callback(std::move(chunk), 0));
    EXPECT_TRUE(callback(std::string_view("a\0b", 3), 0));
    cancelled = true;
    EXPECT_FALSE(callback(std::string_view("dropped"), 0));

    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_TRUE(pieces[0].data() == bytes) << "the piece was copied";
    EXPECT_EQ(pieces[1], std::string("a\0b", 3));
}

}  // namespace
}  // namespace Ostrel::Networking
