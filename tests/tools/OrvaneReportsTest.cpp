#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ReportSamples.h"
#include "tests/tools/ToolRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

Ending runReports(const std::vector<std::string>& arguments) { return runTool(ORVANE_REPORTS, arguments); }

class OrvaneReportsTest : public testing::Test {
protected:
    OrvaneReportsTest() {
        test::writeFile(report_,
                        reportOf(logOf({"Found de-CH", "Initializing orvane download",
                                        "Unable to download orvane: Could not resolve host: \xFF"})));
    }

    test::TemporaryFolder folder_;
    std::filesystem::path report_ = folder_.path() / "reports/001";
    std::string reports_ = (folder_.path() / "reports").string();
};

TEST_F(OrvaneReportsTest, CountsCauses) {
    const Ending ending = runReports({reports_});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output.substr(0, 15), "1 crash report,");
    EXPECT_NE(ending.output.find("1  100.0 %  name-not-resolved\n"), std::string::npos) << ending.output;
}

TEST_F(OrvaneReportsTest, PrintsAnObjectForEachReportWithNullForWhatIsNotKnown) {
    const Ending ending = runReports({reports_, "--json"});
    EXPECT_EQ(ending.status, 0);
    const auto object = nlohmann::json::parse(ending.output);
    EXPECT_EQ(object.at("file"), report_.string());
    EXPECT_EQ(object.at("received").get<std::string>().size(), std::string("2026-11-21T20:29:57Z").size());
    EXPECT_EQ(object.at("source"), "report");
    EXPECT_EQ(object.at("language"), "de");
    EXPECT_EQ(object.at("cause"), "name-not-resolved");
    EXPECT_EQ(object.at("line"), "Unable to download orvane: Could not resolve host: \uFFFD");
    EXPECT_FALSE(object.at("remedy").get<std::string>().empty());
    for (const char* unknown : {"mode", "restartStep", "engineVersion", "bootstrapperMajorVersion"}) {
        EXPECT_TRUE(object.at(unknown).is_null()) << unknown;
    }
    EXPECT_EQ(object.size(), 11U);
}

TEST_F(OrvaneReportsTest, ShowsOneLogWithItsCause) {
    const Ending ending = runReports({"show", report_.string()});
    EXPECT_EQ(ending.status, 0);
    EXPECT_TRUE(ending.output.starts_with(report_.string() + ": name-not-resolved\n")) << ending.output;
    EXPECT_TRUE(
        ending.output.ends_with("  12:34:56: Initializing orvane download\n> 12:34:56: Unable to download "
                                "orvane: Could not resolve host: \\xff\n"))
        << ending.output;
}

TEST_F(OrvaneReportsTest, WritesThePageAsAWhole) {
    const auto page = folder_.path() / "page.html";
    EXPECT_EQ(runReports({reports_, "--html", page.string()}).status, 0);
    EXPECT_TRUE(test::contentsOf(page).ends_with("</html>\n"));
    EXPECT_FALSE(std::filesystem::exists(page.string() + ".partial"));
    EXPECT_EQ(runReports({reports_, "--html", (folder_.path() / "none/page.html").string()}).status, 73);
}

TEST_F(OrvaneReportsTest, ReadsStandardInput) {
    const Ending ending =
        runTool("/bin/sh", {"-c", "cat \"$1\" \"$1\" | \"$0\" -", ORVANE_REPORTS, report_.string()});
    EXPECT_EQ(ending.output.substr(0, 36), "2 crash reports, received unknown\n\n2");
}

TEST_F(OrvaneReportsTest, AFileThatIsNoReportEndsNothing) {
    test::writeFile(folder_.path() / "reports/page", "<html>");
    const Ending ending = runReports({reports_});
    EXPECT_EQ(ending.status, 0);
    EXPECT_NE(ending.output.find("1 file was skipped: 1 foreign, 0 damaged, 0 unreadable\n"),
              std::string::npos);
    const Ending named =
        runTool("/bin/sh", {"-c", "\"$0\" \"$1\" 2>&1 >/dev/null", ORVANE_REPORTS, reports_});
    EXPECT_EQ(named.output, "orvane-reports: skipped (foreign): " + reports_ +
                                "/page: it is neither a crash report nor a log\n");
}

TEST_F(OrvaneReportsTest, TellsFailuresApartByItsStatus) {
    test::writeFile(folder_.path() / "page", "<html>");
    EXPECT_EQ(runReports({}).status, 64);
    EXPECT_EQ(runReports({"show"}).status, 64);
    EXPECT_EQ(runReports({"show", reports_}).status, 64);
    EXPECT_EQ(runReports({"show", (folder_.path() / "page").string()}).status, 65);
    EXPECT_EQ(runReports({"show", (folder_.path() / "none").string()}).status, 66);
    const Ending missing = runReports({reports_, (folder_.path() / "none").string()});
    EXPECT_EQ(missing.status, 66);
    EXPECT_EQ(missing.output.substr(0, 15), "1 crash report,");
}

TEST_F(OrvaneReportsTest, ListsItsCauses) {
    EXPECT_NE(runReports({"causes"}).output.find("disk-full\n"), std::string::npos);
    EXPECT_NE(runReports({"causes", "--markdown"}).output.find(" | `disk-full` |\n"), std::string::npos);
}

} // namespace
} // namespace orvane::tools
