#include "tools/HtmlPage.h"

#include "tests/tools/ReportSamples.h"
#include "tools/DayChart.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr ReceiptTime kNoon =
    std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::hours(12);

ReportSummary summaryOf(const std::vector<std::string>& lastLines,
                        std::optional<ReceiptTime> received = kNoon) {
    ReportSummary summary;
    for (const std::string& line : lastLines) {
        const RunLog log(logOf({"Found fr", line}));
        summary.add({.name = "<a>&'\"", .received = received, .source = LogSource::crashReport, .text = ""},
                    log, diagnose(log, LogSource::crashReport));
    }
    return summary;
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(HtmlPageTest, EscapesNamesAndLogs) {
    const std::string page = htmlPage(
        summaryOf({"Unable to decrypt orvane: <script>alert('\"&')</script></pre>\x1b\xE2\x80\xAE ENOSPC"}));
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_NE(
        page.find("&lt;script&gt;alert(&#39;&quot;&amp;&#39;)&lt;/script&gt;&lt;/pre&gt;\\x1b\\u{202e}"),
        std::string::npos)
        << page;
    EXPECT_NE(page.find("&lt;a&gt;&amp;&#39;&quot;, received"), std::string::npos);
    EXPECT_EQ(countOf(page, "</pre>"), 1U);
}

TEST(HtmlPageTest, AsksForNothingFromElsewhere) {
    const std::string page = htmlPage(summaryOf({"Cannot spawn orvane: x (ENOENT)"}));
    EXPECT_NE(page.find("content=\"default-src 'none'; style-src 'unsafe-inline'"), std::string::npos);
    for (const char* reference : {"src=", "http:", "https:", "url(", "@import", "<link"}) {
        EXPECT_EQ(page.find(reference), std::string::npos) << reference;
    }
}

TEST(HtmlPageTest, MarksTheLineThatShowsTheCause) {
    const std::string page = htmlPage(summaryOf({"Cannot spawn orvane: x (ENOENT)"}));
    EXPECT_NE(page.find("12:34:56: Found fr\n12:34:56: <mark>Cannot spawn orvane: x (ENOENT)</mark>\n</pre>"),
              std::string::npos)
        << page;
}

TEST(HtmlPageTest, HasAPageWithoutReportsAndOneWithoutTimes) {
    EXPECT_NE(htmlPage({}).find("0 logs."), std::string::npos);
    const std::string page = htmlPage(summaryOf({"Cannot spawn orvane: x (ENOENT)"}, std::nullopt));
    EXPECT_EQ(page.find("<svg"), std::string::npos);
    EXPECT_NE(page.find("received unknown"), std::string::npos);
}

TEST(DayChartTest, HasAColumnADayAndAColourACause) {
    ReportSummary summary = summaryOf({"Cannot spawn orvane: x (ENOENT)", "Cannot spawn orvane: x (ENOENT)",
                                       "Cannot spawn orvane: x (EACCES)"});
    const std::string chart = dayChart(summary);
    EXPECT_EQ(countOf(chart, "<rect"), 2U);
    EXPECT_NE(chart.find("<rect class=\"c0\""), std::string::npos);
    EXPECT_NE(chart.find("<title>2026-11-21: 2 engine-missing</title>"), std::string::npos) << chart;
    EXPECT_NE(chart.find("<title>2026-11-21: 1 engine-not-permitted</title>"), std::string::npos) << chart;
    EXPECT_EQ(countOf(chart, ">2026-11-21</text>"), 1U);
}

TEST(DayChartTest, ShowsTheLastSixtyDays) {
    ReportSummary summary;
    for (int day = 0; day < 100; ++day) {
        const RunLog log(logOf({"Cannot spawn orvane: x (ENOENT)"}));
        summary.add({.name = "a",
                     .received = kNoon + std::chrono::days(day),
                     .source = LogSource::crashReport,
                     .text = ""},
                    log, diagnose(log, LogSource::crashReport));
    }
    EXPECT_EQ(countOf(dayChart(summary), "<rect"), 60U);
}

} // namespace
} // namespace orvane::tools
