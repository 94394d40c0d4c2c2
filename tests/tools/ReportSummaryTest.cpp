#include "tools/ReportSummary.h"

#include "tests/tools/ReportSamples.h"
#include "tools/ReportText.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr ReceiptTime kNoon =
    std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::hours(12);

void add(ReportSummary& summary, const std::string& line, const std::string& name,
         std::optional<ReceiptTime> received) {
    const FoundLog found{.name = name, .received = received, .source = LogSource::crashReport, .text = ""};
    const RunLog log(logOf({line}));
    summary.add(found, log, diagnose(log, found.source));
}

const std::string kFull = "Unable to decrypt orvane: x: No space left on device (ENOSPC)";
const std::string kBusy = "Unable to decrypt orvane: x: Text file busy (ETXTBSY)";

TEST(ReportSummaryTest, CountsCausesTheMostFrequentFirst) {
    ReportSummary summary;
    add(summary, kBusy, "a", kNoon);
    add(summary, kFull, "b", kNoon - std::chrono::hours(24));
    add(summary, kFull, "c", kNoon);
    const auto counts = summary.byFrequency();
    ASSERT_EQ(counts.size(), 2U);
    EXPECT_EQ(counts[0].cause->id, "disk-full");
    EXPECT_EQ(counts[0].count, 2U);
    EXPECT_EQ(counts[0].period.first, kNoon - std::chrono::hours(24));
    EXPECT_EQ(counts[0].period.last, kNoon);
    EXPECT_EQ(counts[1].cause->id, "engine-in-use");
    EXPECT_EQ(summary.total(), 3U);
    EXPECT_EQ(summary.days().size(), 2U);
    EXPECT_EQ(shareText(2, 3), "66.7 %");
}

TEST(ReportSummaryTest, TheNewestLogIsTheExample) {
    ReportSummary summary;
    add(summary, kFull, "old", kNoon - std::chrono::seconds(1));
    add(summary, kFull, "new b", kNoon);
    add(summary, kFull, "new a", kNoon);
    add(summary, kFull, "older", kNoon - std::chrono::seconds(2));
    add(summary, kFull, "undated", std::nullopt);
    const CauseCount count = summary.byFrequency().front();
    EXPECT_EQ(count.exampleName, "new a");
    EXPECT_EQ(count.exampleLine, kFull);
    EXPECT_EQ(count.count, 5U);
}

TEST(ReportSummaryTest, KeepsTheEndOfALongExample) {
    ReportSummary summary;
    const RunLog log(logOf({"Orvane download info is " + std::string(100'000, 'x'), "line", kFull}));
    summary.add({.name = "a", .received = kNoon, .source = LogSource::crashReport, .text = ""}, log,
                diagnose(log, LogSource::crashReport));
    const CauseCount count = summary.byFrequency().front();
    EXPECT_LE(count.exampleText.size(), ReportSummary::kExampleBytes + 10);
    EXPECT_TRUE(count.exampleText.ends_with(kFull + "\r\n"));
    EXPECT_TRUE(count.exampleText.starts_with("…\n12:34:56: line"));
}

TEST(ReportSummaryTest, KeepsTheLastDaysAlone) {
    ReportSummary summary;
    for (int day = 0; day < 1000; ++day) {
        add(summary, kFull, "a", kNoon + std::chrono::days(day));
    }
    EXPECT_EQ(summary.days().size(), ReportSummary::kMostDays);
    EXPECT_EQ(summary.days().rbegin()->first,
              std::chrono::floor<std::chrono::days>(kNoon) + std::chrono::days(999));
    EXPECT_EQ(summary.total(), 1000U);
}

TEST(ReportSummaryTest, SaysWhatItCountedAndWhatItSkipped) {
    ReportSummary summary;
    EXPECT_EQ(summaryText(summary), "0 crash reports, received unknown\n");
    add(summary, kFull, "reports/001\x1b", kNoon);
    summary.addSkipped({.name = "x", .kind = Unusable::damaged, .reason = ""});
    summary.addSkipped({.name = "y", .kind = Unusable::foreign, .reason = ""});
    const std::string text = summaryText(summary);
    EXPECT_TRUE(text.starts_with("1 crash report, received 2026-11-21 12:00:00 to 2026-11-21 12:00:00 UTC\n"
                                 "2 files were skipped: 1 foreign, 1 damaged, 0 unreadable\n\n"
                                 "1  100.0 %  disk-full\n"))
        << text;
    EXPECT_NE(text.find("L'installation a échoué"), std::string::npos);
    EXPECT_NE(text.find(std::string("remedy        ") + std::string(causeNamed("disk-full").remedy)),
              std::string::npos);
    EXPECT_NE(text.find("example       reports/001\\x1b\n"), std::string::npos) << text;
}

} // namespace
} // namespace orvane::tools
