#include "tests/support/RunTest.h"

#include "log/Logger.h"

namespace orvane::test {

RunTest::RunTest() {
    deployment.values.fileDescriptionUrl = server.root() + "/downloadinstaller?os=darwin&product=varlen";
    deployment.values.crashReportUrl = server.root() + kCrashReport;
    server.answer(kCrashReport, response(""));

    controller->initializeLocale();
    const auto logger = std::make_shared<Logger>(deployment.values);
    logger->OpenProgramLog(deployment.values.logRoot);
    controller->logger.store(logger);
    controller->orvaneExeUrl.store(deployment.engine());
}

void RunTest::expectFatalError(const std::string& message) {
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
    const auto alerts = desktop.shownAlerts();
    ASSERT_EQ(alerts.size(), 1U);
    EXPECT_EQ(alerts.front().alert.messageText, message);
    EXPECT_EQ(alerts.front().alert.buttonTitles, std::vector<std::string>{"OK"});
    EXPECT_EQ(alerts.front().alert.style, platform::AlertStyle::critical);
}

} // namespace orvane::test
