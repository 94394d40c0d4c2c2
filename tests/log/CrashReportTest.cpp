#include "log/Logger.h"

#include "log/Base64.h"
#include "platform/Bytes.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/DeathTest.h"
#include "tests/support/Gate.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TestDeployment.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

constexpr char kTarget[] = "/crashreport";
constexpr char kFailure[] = "cannot send crash report to orvane server: ";

std::string headOf(const std::string& request) { return request.substr(0, request.find("\r\n\r\n") + 2); }
std::string bodyOf(const std::string& request) { return request.substr(request.find("\r\n\r\n") + 4); }

std::string reportOf(const std::string& log) {
    return R"({"Product": "varlen", "Report": ")" + base64Encoded(bytesOf(log)) +
           R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";
}

class CrashReportTest : public DeathTest {
protected:
    CrashReportTest() {
        deployment.values.crashReportUrl = server.root() + kTarget;
        server.answer(kTarget, response(""));
    }

    void open() { logger.OpenProgramLog(deployment.values.logRoot); }

    std::filesystem::path logFile() const {
        return deployment.values.logRoot / ("Install " + logger.GetCurrentTimeString() + " (bootstrap).log");
    }

    /// The body of the only request.
    std::string sentBody() const {
        const Lines requests = server.requests();
        EXPECT_EQ(requests.size(), 1U);
        return requests.empty() ? std::string() : bodyOf(requests.front());
    }

    /// What is printed, and therefore logged, while a report is sent.
    std::string printedWhileSending() {
        CaptureStandardOutput output;
        logger.SendCrashToOrvaneServer();
        return output.finish();
    }

    ScriptedServer server;
    TestDeployment deployment;
    Logger logger{deployment.values};
};

TEST_F(CrashReportTest, TheLogIsPostedAsAJsonText) {
    open();
    logger.WriteProgramLog("Cannot spawn orvane: no such file");
    const std::string log = contentsOf(logFile());
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
    EXPECT_EQ(sentBody(), reportOf(log));
}

TEST_F(CrashReportTest, ALogOfThreeBytesGivesTheExactBody) {
    open();
    writeFile(logFile(), "abc");
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(sentBody(), "{\"Product\": \"varlen\", \"Report\": \"YWJj\", \"OS\": \"darwin\", "
                          "\"SoftwareName\": \"bootstrapper\", \"SoftwareVersion\": \"0.1.0\"}");
}

TEST_F(CrashReportTest, AnEmptyLogGivesAnEmptyReport) {
    open();
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(sentBody(), "{\"Product\": \"varlen\", \"Report\": \"\", \"OS\": \"darwin\", "
                          "\"SoftwareName\": \"bootstrapper\", \"SoftwareVersion\": \"0.1.0\"}");
}

TEST_F(CrashReportTest, ALongLogIsPostedWholeAndWithoutLineBreaks) {
    open();
    std::string log;
    while (log.size() < 3'000'000) {
        log += std::to_string(log.size());
    }
    writeFile(logFile(), log);
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(sentBody(), reportOf(log));
}

TEST_F(CrashReportTest, TheContentTypeIsJsonAndTheOnlyHeaderOfOurOwn) {
    open();
    logger.SendCrashToOrvaneServer();
    ASSERT_EQ(server.requests().size(), 1U);
    const std::string head = headOf(server.requests().front());
    EXPECT_NE(head.find("\r\nContent-Type: application/json\r\n"), std::string::npos) << head;
    EXPECT_EQ(head.find("Content-Type"), head.rfind("Content-Type")) << head;
    for (const char* other : {"Cookie", "Authorization", "Referer", "Origin", "Expect"}) {
        EXPECT_EQ(head.find(other), std::string::npos) << head;
    }
}

TEST_F(CrashReportTest, ALogThatWasNeverOpenedSendsAndPrintsNothing) {
    EXPECT_EQ(printedWhileSending(), "");
    writeFile(deployment.values.logRoot, "a file in the way");
    CaptureStandardOutput(), open();
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(CrashReportTest, AClosedLogIsNotSent) {
    open();
    logger.CloseProgramLog();
    EXPECT_EQ(printedWhileSending(), "");
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(CrashReportTest, AnUnreadableLogIsLoggedAndNothingIsSent) {
    open();
    std::filesystem::remove(logFile());
    EXPECT_EQ(printedWhileSending(),
              kFailure + logFile().string() + ": No such file or directory (ENOENT)\n");
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(CrashReportTest, AnErrorStatusCountsAsDelivered) {
    open();
    for (const char* status : {"500 Internal Server Error", "404 Not Found", "301 Moved Permanently"}) {
        server.answer(kTarget, response("{\"error\": \"no\"}", status));
        EXPECT_EQ(printedWhileSending(), "") << status;
    }
}

TEST_F(CrashReportTest, AnAnswerOfAnySizeCountsAsDelivered) {
    server.answer(kTarget, response(std::string((std::size_t{64} << 20) + 1, 'x')));
    open();
    EXPECT_EQ(printedWhileSending(), "");
}

TEST_F(CrashReportTest, WithoutAServerTheLogGainsOneLineWithThePlatformsDescription) {
    deployment.values.crashReportUrl = std::string(TestDeployment::kNobody) + kTarget;
    open();
    const std::string printed = printedWhileSending();
    EXPECT_TRUE(printed.starts_with(kFailure)) << printed;
    EXPECT_NE(printed.find("localhost"), std::string::npos) << printed;
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1) << printed;
    EXPECT_EQ(contentsOf(logFile()).substr(10), printed.substr(0, printed.size() - 1) + "\r\n");
}

TEST_F(CrashReportTest, TheFailuresLineIsNotPartOfTheReport) {
    server.answer(kTarget, [](LoopbackConnection& connection) { connection.drop(); });
    open();
    logger.WriteProgramLog("the last line");
    const std::string log = contentsOf(logFile());
    EXPECT_TRUE(printedWhileSending().starts_with(kFailure));
    EXPECT_EQ(sentBody(), reportOf(log));
}

TEST_F(CrashReportTest, WithoutAnAnswerInTimeTheLogGainsTheTimeoutAndTheRequestGoesOn) {
    deployment.values.crashReportWait = 1s;
    const Gate mayAnswer;
    const Gate isAnswered;
    server.answer(kTarget, [mayAnswer, isAnswered](LoopbackConnection& connection) {
        EXPECT_TRUE(mayAnswer.wait());
        EXPECT_TRUE(connection.send(response("late"))) << "the request was abandoned, not cancelled";
        isAnswered.open();
    });
    open();
    EXPECT_EQ(printedWhileSending(), std::string(kFailure) + "Request timeout\n");
    mayAnswer.open();
    EXPECT_TRUE(isAnswered.wait());
}

TEST_F(CrashReportTest, TheRequestHasALimitOfItsOwn) {
    deployment.values.crashReportTimeout = 1s;
    const Gate mayEnd;
    server.answer(kTarget, [mayEnd](LoopbackConnection&) { mayEnd.wait(); });
    open();
    const std::string printed = printedWhileSending();
    mayEnd.open();
    EXPECT_TRUE(printed.starts_with(kFailure)) << printed;
    EXPECT_EQ(printed.find("Request timeout"), std::string::npos)
        << "that is the caller's limit: " << printed;
}

TEST_F(CrashReportTest, AnAddressThatIsNoUrlIsAProgrammingError) {
    deployment.values.crashReportUrl = "https://127.0.0.1/crash report";
    open();
    EXPECT_DEATH(logger.SendCrashToOrvaneServer(), "a request's address is not a URL: .*/crash report");
}

} // namespace
} // namespace orvane::test
