#include "demo/CrashReportArchive.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::demo {
namespace {

std::string reportOf(const std::string& log) {
    return R"({"Product": "varlen", "Report": ")" + log +
           R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";
}

TEST(CrashReportArchiveTest, KeepsEachReportAndItsReadableLog) {
    const test::TemporaryFolder folder;
    CrashReportArchive archive(folder.path() / "reports");
    archive.add(reportOf("YWJj"));
    archive.add(reportOf(""));
    EXPECT_EQ(test::contentsOf(folder.path() / "reports/001.json"), reportOf("YWJj"));
    EXPECT_EQ(test::contentsOf(folder.path() / "reports/001.log"), "abc");
    EXPECT_EQ(test::contentsOf(folder.path() / "reports/002.log"), "");
}

TEST(CrashReportArchiveTest, RefusesWhatIsNoReport) {
    const test::TemporaryFolder folder;
    CrashReportArchive archive(folder.path());
    EXPECT_THROW(archive.add(""), CrashReportError);
    EXPECT_THROW(archive.add("[]"), CrashReportError);
    EXPECT_THROW(archive.add(R"({"Product": "varlen"})"), CrashReportError);
    EXPECT_THROW(
        archive.add(R"({"Product": 1, "Report": "", "OS": "", "SoftwareName": "", "SoftwareVersion": ""})"),
        CrashReportError);
    EXPECT_THROW(
        archive.add(R"({"product": "", "Report": "", "OS": "", "SoftwareName": "", "SoftwareVersion": ""})"),
        CrashReportError);
    EXPECT_THROW(archive.add(reportOf("a")), CrashReportError);
    std::string withSixthKey = reportOf("");
    withSixthKey.insert(1, R"("User": "x", )");
    EXPECT_THROW(archive.add(withSixthKey), CrashReportError);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace orvane::demo
