#include "tools/CrashReportBody.h"

#include "tests/tools/ReportSamples.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

Unusable kindOf(const std::string& body) {
    try {
        logInReport(body);
    } catch (const UnusableReport& error) {
        return error.kind();
    }
    ADD_FAILURE() << "read as a report: " << body;
    return Unusable::unreadable;
}

TEST(CrashReportBodyTest, HoldsTheLog) {
    EXPECT_EQ(logInReport(reportOf("abc")), "abc");
    EXPECT_EQ(logInReport(reportOf("")), "");
    EXPECT_EQ(logInReport(" \r\n" + reportOf("abc") + "\n"), "abc");
}

TEST(CrashReportBodyTest, TellsAnotherProgramsReportFromADamagedOne) {
    const std::string whole = reportOf("abc");
    EXPECT_EQ(kindOf("<html>"), Unusable::foreign);
    EXPECT_EQ(kindOf("[]"), Unusable::foreign);
    EXPECT_EQ(kindOf(R"({"Product": "other", "SoftwareName": "bootstrapper", "Report": ""})"),
              Unusable::foreign);
    EXPECT_EQ(kindOf(R"({"Product": "varlen", "SoftwareName": "other", "Report": ""})"), Unusable::foreign);
    EXPECT_EQ(kindOf(""), Unusable::damaged);
    EXPECT_EQ(kindOf(" \n"), Unusable::damaged);
    EXPECT_EQ(kindOf(whole.substr(0, whole.size() - 1)), Unusable::damaged);
    EXPECT_EQ(kindOf(R"({"Product": "varlen", "SoftwareName": "bootstrapper"})"), Unusable::damaged);
    EXPECT_EQ(kindOf(R"({"Product": "varlen", "SoftwareName": "bootstrapper", "Report": 1})"),
              Unusable::damaged);
    EXPECT_EQ(kindOf(R"({"Product": "varlen", "SoftwareName": "bootstrapper", "Report": "?"})"),
              Unusable::damaged);
}

} // namespace
} // namespace orvane::tools
