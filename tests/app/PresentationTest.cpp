#include "log/Logger.h"
#include "platform/Queue.h"
#include "tests/support/ControllerTest.h"

#include <limits>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

class PresentationTest : public ControllerTest {};

TEST_F(PresentationTest, NothingChangesBeforeTheMainQueueRuns) {
    controller->showStep("Download");
    controller->showError("No network");
    controller->setProgression(42);
    controller->setCancelButtonText("Stop");
    EXPECT_EQ(journal(), Lines{});

    desktop.drainMainQueue();
    EXPECT_EQ(journal(), (Lines{"textStep text \"Download\"", "textError text \"No network\"",
                                "progressBar value 42", "cancelButton title \"Stop\""}));
}

TEST_F(PresentationTest, APositionOutsideTheBarIsPassedOnAsItIs) {
    controller->setProgression(150);
    controller->setProgression(-1);
    controller->setProgression(std::numeric_limits<std::int64_t>::max());
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), (Lines{"progressBar value 150", "progressBar value -1",
                                "progressBar value " + numberText(9223372036854775807.0)}));
}

TEST_F(PresentationTest, AnEmptyTextClearsTheField) {
    controller->showError("");
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), Lines{"textError text \"\""});
}

TEST_F(PresentationTest, MarkupIsNeitherReadNorRemoved) {
    controller->showStep("<b>50 %</b> &amp; more");
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), Lines{"textStep text \"<b>50 %</b> &amp; more\""});
}

TEST_F(PresentationTest, TextsOfTwoThreadsAppearInTheOrderOfSubmission) {
    BackgroundWork([this] { controller->showStep("first"); }).wait();
    BackgroundWork([this] { controller->showStep("second"); }).wait();
    controller->showStep("third");
    desktop.drainMainQueue();
    EXPECT_EQ(journal(),
              (Lines{"textStep text \"first\"", "textStep text \"second\"", "textStep text \"third\""}));
}

TEST_F(PresentationTest, UpdatesKeepTheControllerUntilTheyAreShown) {
    controller->showStep("last words");
    controller.reset();
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), Lines{"textStep text \"last words\""});
}

TEST_F(PresentationTest, AControlThatIsGoneIsAProgrammingError) {
    controls = {};
    const auto show = [this](const auto& operation) {
        operation();
        desktop.drainMainQueue();
    };
    EXPECT_DEATH(show([this] { controller->showStep("x"); }), "control");
    EXPECT_DEATH(show([this] { controller->showError("x"); }), "control");
    EXPECT_DEATH(show([this] { controller->setProgression(1); }), "control");
    EXPECT_DEATH(show([this] { controller->setCancelButtonText("x"); }), "control");
}

TEST_F(PresentationTest, AFatalErrorTakesTheWindowAwayAsksForOneClickAndEndsWithOne) {
    controller->showFatalErrorAndQuit("It <failed>");
    desktop.answerNextAlert([this](const platform::Alert& alert) {
        EXPECT_EQ(alert.style, platform::AlertStyle::critical);
        EXPECT_EQ(journal().front(), "window ordered out");
        return platform::kAlertFirstButtonReturn;
    });
    EXPECT_THROW(desktop.drainMainQueue(), ProcessEnded);
    EXPECT_EQ(journal(), (Lines{"window ordered out", "alert \"It <failed>\" [OK]", "alert answered 1000",
                                "process ended 1"}));
}

TEST_F(PresentationTest, AFatalErrorMayBeEmptyAndNeedsNoWindow) {
    controls.window.reset();
    controller->showFatalErrorAndQuit("");
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_THROW(desktop.drainMainQueue(), ProcessEnded);
    EXPECT_EQ(journal(), (Lines{"alert \"\" [OK]", "alert answered 1000", "process ended 1"}));
}

TEST_F(PresentationTest, UpdatesWaitBehindTheFatalAlert) {
    controller->showStep("before");
    controller->showFatalErrorAndQuit("Failed");
    controller->showStep("after");
    desktop.answerNextAlert([this](const platform::Alert&) {
        EXPECT_EQ(journal().front(), "textStep text \"before\"");
        EXPECT_EQ(desktop.waitingMainItems(), 1U);
        return platform::kAlertFirstButtonReturn;
    });
    EXPECT_THROW(desktop.drainMainQueue(), ProcessEnded);
    EXPECT_FALSE(desktop.journal()->contains("textStep text \"after\""));
}

TEST_F(PresentationTest, OfTheUpdatesBehindAnAlertOnlyTheLastOfEachControlWaits) {
    controller->showFatalErrorAndQuit("Failed");
    for (int number = 0; number < 10'000; ++number) {
        controller->showStep(std::to_string(number));
        controller->showError(std::to_string(number));
        controller->setProgression(number);
        controller->setCancelButtonText(std::to_string(number));
        controls.cancelButton->setEnabled(number % 2 == 1);
    }
    EXPECT_EQ(desktop.waitingMainItems(), 1U + 5U);
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_THROW(desktop.drainMainQueue(), ProcessEnded);
    desktop.journal()->clear();
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), (Lines{"textStep text \"9999\"", "textError text \"9999\"", "progressBar value 9999",
                                "cancelButton title \"9999\"", "cancelButton enabled"}));
}

TEST_F(PresentationTest, TheCrashReportOfTheMainThreadPrecedesTheAlert) {
    startUp();
    forgetStartUp();
    platform::mainQueueAsync([this] {
        controller->showFatalErrorAndQuit("Failed");
        EXPECT_TRUE(logHasLineStarting("cannot send crash report to orvane server: "));
        EXPECT_EQ(journal(), Lines{"window displayed"}) << "the report may block the main thread for seconds";
    });
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
}

} // namespace
} // namespace orvane::test
