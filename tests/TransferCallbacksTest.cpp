#include "Networking/Cpr/TransferCallbacks.h"

#include <chrono>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Ostrel/Time/SteadyClock.h"

namespace Ostrel::Networking {
namespace {

using Time::SteadyClock;

constexpr auto ENDLESS = std::numeric_limits<std::int64_t>::max();

TEST(ProgressTest, ReportsWithinItsLimits) {
    struct Event {
        std::int64_t interval, downloaded, total;
    };
    struct Row {
        std::string name;
        std::vector<Event> events;
        std::vector<std::int64_t> reports;
    };
    for (auto const& row : std::vector<Row>{
             {"total too small", {{0, 10, 1023}}, {}},
             {"total large enough", {{0, 10, 1024}}, {10}},
             {"negative totals count as unsigned", {{0, 5, -1}}, {5}},
             {"nothing downloaded yet", {{0, 0, 4096}}, {}},
             {"same count twice", {{0, 5, 4096}, {0, 5, 4096}, {0, 6, 4096}}, {5, 6}},
             {"a count that shrinks has changed", {{0, 5, 4096}, {0, 4, 4096}}, {5, 4}},
             {"a count too early is seen", {{0, 5, 4096}, {ENDLESS, 6, 4096}, {0, 6, 4096}}, {5}},
             {"first report at once",
              {{ENDLESS, 5, 4096}, {SteadyClock().Now() / 2, 6, 4096}},
              {6}},
         }) {
        SCOPED_TRACE(row.name);
        std::vector<std::int64_t> reports;
        Options options;
        Event current{};
        options.onProgress = [&](std::int64_t downloaded, std::int64_t total) {
            EXPECT_EQ(total, current.total);
            reports.push_back(downloaded);
        };
        TransferCallbacks callbacks(options);
        for (auto const& event : row.events) {
            current = event;
            options.progressInterval = event.interval;
            auto const before = SteadyClock().Now();
            while (SteadyClock().Now() == before) {
            }
            EXPECT_TRUE(callbacks.addProgress(event.total, event.downloaded));
        }
        EXPECT_EQ(reports, row.reports);
    }
}

TEST(ProgressTest, ReportsOnceInAnIntervalOfMicroseconds) {
    using std::chrono::steady_clock;
    constexpr auto FEW = std::chrono::milliseconds(4);
    int reports = 0;
    Options options;
    options.progressInterval = 1000;
    options.onProgress = [&reports](std::int64_t, std::int64_t) { ++reports; };
    TransferCallbacks callbacks(options);

    auto const start = steady_clock::now();
    for (int downloaded = 1; reports < 5 && steady_clock::now() - start < 1000 * FEW;
         ++downloaded) {
        callbacks.addProgress(4096, downloaded);
    }
    EXPECT_EQ(reports, 5);
    EXPECT_GE(steady_clock::now() - start, FEW);
}

TEST(ProgressTest, AsksForCancellationOnEveryEventAfterTheReport) {
    std::string calls;
    Options options;
    options.isCancelled = [&calls] { return calls += 'c', calls.size() > 3; };
    options.onProgress = [&calls](std::int64_t, std::int64_t) { calls += 'p'; };
    TransferCallbacks callbacks(options);

    EXPECT_TRUE(callbacks.addProgress(0, 0));
    EXPECT_TRUE(callbacks.addProgress(4096, 5));
    EXPECT_FALSE(callbacks.addProgress(4096, 5));
    EXPECT_EQ(calls, "cpcc");
}

TEST(CollectionTest, MovesPiecesToOnDataUntilCancelled) {
    std::vector<std::string> pieces;
    Options options;
    options.isCancelled = [&pieces] { return pieces.size() == 2; };
    options.onData = [&pieces](std::string piece) { pieces.push_back(std::move(piece)); };
    TransferCallbacks callbacks(options);
    std::string piece(100, 'x');
    auto const* const bytes = piece.data();

    EXPECT_TRUE(callbacks.addBody(std::move(piece)));
    EXPECT_TRUE(pieces.at(0).data() == bytes) << "the piece was copied";
    EXPECT_TRUE(callbacks.addBody(std::string_view("a\0b", 3)));
    EXPECT_EQ(pieces.at(1), std::string("a\0b", 3));
    EXPECT_FALSE(callbacks.addBody(std::string_view("dropped")));
    EXPECT_EQ(pieces.size(), 2U);
    EXPECT_EQ(callbacks.takeBody(), "");
    EXPECT_FALSE(callbacks.refusal()) << "libcurl reports a cancellation itself";
}

TEST(CollectionTest, RefusesWhatComesAfterTheTimeLimit) {
    for (auto const timeout : std::vector<std::int64_t>{1000, 999, -1000, ENDLESS}) {
        auto const isLimited = timeout == 1000;
        SCOPED_TRACE(timeout);
        Options options;
        options.timeout = timeout;
        TransferCallbacks callbacks(options);
        auto const start = SteadyClock().Now();
        while (SteadyClock().Now() < start + 1000) {
        }

        EXPECT_EQ(callbacks.addHead("X: 1\r\n"), !isLimited);
        EXPECT_EQ(callbacks.addBody(std::string_view("x")), !isLimited);
        EXPECT_EQ(callbacks.takeBody(), isLimited ? "" : "x");
        EXPECT_EQ(callbacks.refusal().has_value(), isLimited);
    }
}

TEST(CollectionTest, RefusesHeadsOfMoreThanAMebibyteTogether) {
    Options const options;
    TransferCallbacks callbacks(options);
    std::string const half(1 << 19, 'x');
    EXPECT_TRUE(callbacks.addHead(half));
    EXPECT_TRUE(callbacks.addHead(half));
    EXPECT_TRUE(callbacks.addBody(std::string_view("a body has no limit")));
    EXPECT_FALSE(callbacks.refusal());
    EXPECT_FALSE(callbacks.addHead("x"));
    ASSERT_TRUE(callbacks.refusal());
    EXPECT_EQ(callbacks.refusal()->code, ErrorCode::InternalError);
}

TEST(CollectionTest, RefusesAResponseThatIsCompressedMoreThanOnce) {
    struct Row {
        std::vector<std::string> lines;
        bool isAccepted;
    };
    for (auto const& [lines, isAccepted] : std::vector<Row>{
             {{"Content-Encoding: gzip\r\n", "Transfer-Encoding: chunked\r\n", "Vary: a, b\r\n"},
              true},
             {{"Content-Encoding: Identity , br,\r\n"}, true},
             {{"Content-Encoding: gzip\r\n", "\r\n", "Content-Encoding: gzip\r\n"}, true},
             {{"Content-Encoding: gzip, br\r\n"}, false},
             {{"content-encoding:gzip\r\n", "CONTENT-ENCODING: gzip\r\n"}, false},
             {{"Content-Encoding: br\n", "Transfer-Encoding: gzip, Chunked\n"}, false},
         }) {
        SCOPED_TRACE(lines[0]);
        Options const options;
        TransferCallbacks callbacks(options);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            auto const isLast = i + 1 == lines.size();
            EXPECT_EQ(callbacks.addHead(lines[i]), isAccepted || !isLast) << lines[i];
        }
        EXPECT_EQ(callbacks.refusal().has_value(), !isAccepted);
    }
}

}  // namespace
}  // namespace Ostrel::Networking
