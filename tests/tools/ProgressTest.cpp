#include "tools/Progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t kMiB = 1 << 20;

class ProgressLineTest : public testing::Test {
protected:
    /// What the terminal shows after a report, `elapsed` after the one before.
    std::string shownAfter(std::chrono::milliseconds elapsed, const Progress& progress) {
        now_ += elapsed;
        line_->show(progress);
        const std::string all = terminal_.str();
        return all.substr(all.rfind("\x1b[K") + 3);
    }

    std::ostringstream terminal_;
    std::chrono::steady_clock::time_point now_;
    std::optional<ProgressLine> line_{std::in_place, terminal_, [this] { return now_; }};
};

TEST_F(ProgressLineTest, IsOverwrittenAndErasedInTheEnd) {
    line_->show({.what = "reading"});
    line_->show({.what = "fetching"});
    line_.reset();
    EXPECT_EQ(terminal_.str(), "\r\x1b[Kreading\r\x1b[Kfetching\r\x1b[K");
}

TEST_F(ProgressLineTest, ShowsSizeSpeedAndRemainingTimeOfLargeFiles) {
    EXPECT_EQ(shownAfter(0s, {.what = "fetching", .done = 0, .total = 100 * kMiB}),
              "fetching: 0 bytes of 100.0 MiB");
    EXPECT_EQ(shownAfter(2s, {.what = "fetching", .done = 20 * kMiB, .total = 100 * kMiB}),
              "fetching: 20.0 MiB of 100.0 MiB, 10.0 MiB/s, 8 s left");
    EXPECT_EQ(shownAfter(8s, {.what = "fetching", .done = 25 * kMiB, .total = 100 * kMiB}),
              "fetching: 25.0 MiB of 100.0 MiB, 2.5 MiB/s, 30 s left");
    EXPECT_EQ(shownAfter(90s, {.what = "fetching", .done = 50 * kMiB, .total = 100 * kMiB}),
              "fetching: 50.0 MiB of 100.0 MiB, 512.0 KiB/s, 1 min 40 s left");
}

TEST_F(ProgressLineTest, MeasuresFromTheBeginningOfEachStep) {
    shownAfter(0s, {.what = "reading", .done = 0, .total = 64 * kMiB});
    shownAfter(60s, {.what = "writing", .done = 0, .total = 64 * kMiB});
    EXPECT_EQ(shownAfter(1s, {.what = "writing", .done = 32 * kMiB, .total = 64 * kMiB}),
              "writing: 32.0 MiB of 64.0 MiB, 32.0 MiB/s, 1 s left");
}

TEST_F(ProgressLineTest, ShowsTheNameAloneForFilesBelow64MiB) {
    EXPECT_EQ(shownAfter(0s, {.what = "fetching", .done = 0, .total = 64 * kMiB - 1}), "fetching");
    EXPECT_EQ(shownAfter(2s, {.what = "fetching", .done = 1, .total = 64 * kMiB - 1}), "fetching");
}

TEST_F(ProgressLineTest, ShowsSizeAndSpeedWhileTheLengthIsUnknown) {
    shownAfter(0s, {.what = "fetching", .done = 0});
    EXPECT_EQ(shownAfter(1s, {.what = "fetching", .done = 63 * kMiB}), "fetching");
    EXPECT_EQ(shownAfter(1s, {.what = "fetching", .done = 64 * kMiB}), "fetching: 64.0 MiB, 32.0 MiB/s");
}

TEST_F(ProgressLineTest, IsWrittenFiveTimesASecondAtMost) {
    shownAfter(0s, {.what = "fetching", .done = 0, .total = 100 * kMiB});
    const std::string before = terminal_.str();
    shownAfter(199ms, {.what = "fetching", .done = kMiB, .total = 100 * kMiB});
    EXPECT_EQ(terminal_.str(), before);
    shownAfter(1ms, {.what = "fetching", .done = kMiB, .total = 100 * kMiB});
    EXPECT_NE(terminal_.str(), before);
}

TEST_F(ProgressLineTest, ThatWasNeverShownLeavesTheTerminalAlone) {
    line_.reset();
    EXPECT_EQ(terminal_.str(), "");
}

TEST(ReadableSizeTest, UsesTheLargestUnitBelowIt) {
    EXPECT_EQ(readableSize(0), "0 bytes");
    EXPECT_EQ(readableSize(1023), "1023 bytes");
    EXPECT_EQ(readableSize(1024), "1.0 KiB");
    EXPECT_EQ(readableSize(48211968), "46.0 MiB");
    EXPECT_EQ(readableSize(3LL << 40), "3.0 TiB");
}

} // namespace
} // namespace orvane::tools
