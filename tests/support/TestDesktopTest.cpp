#include "tests/support/TestDesktop.h"

#include "platform/Queue.h"
#include "tests/support/RecordingControls.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

using platform::Alert;
using platform::kAlertFirstButtonReturn;
using platform::kAlertSecondButtonReturn;
using platform::mainQueueAsync;
using platform::utilityQueueAsync;

TEST(TestDesktopTest, MainItemsRunOneByOneInTheOrderOfSubmission) {
    TestDesktop desktop;
    const auto journal = desktop.journal();
    mainQueueAsync([journal] {
        mainQueueAsync([journal] { journal->add("third"); });
        journal->add("first");
    });
    mainQueueAsync([journal] { journal->add("second"); });
    EXPECT_EQ(desktop.waitingMainItems(), 2U);
    desktop.drainMainQueue();
    EXPECT_EQ(journal->entries(), (std::vector<std::string>{"first", "second", "third"}));
}

TEST(TestDesktopTest, UtilityItemsWaitUntilTheTestRunsThemElsewhere) {
    TestDesktop desktop;
    std::thread::id thread;
    utilityQueueAsync([&thread] { thread = std::this_thread::get_id(); });
    EXPECT_EQ(desktop.waitingUtilityItems(), 1U);
    EXPECT_EQ(thread, std::thread::id());
    EXPECT_EQ(desktop.runUtilityItem(), std::nullopt);
    EXPECT_NE(thread, std::thread::id());
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(TestDesktopTest, AnAlertOfAnotherThreadIsAnsweredOnTheMainThreadInItsTurn) {
    TestDesktop desktop;
    const auto journal = desktop.journal();
    const auto mainThread = std::this_thread::get_id();
    desktop.answerNextAlert([mainThread](const Alert&) {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        return kAlertSecondButtonReturn;
    });
    mainQueueAsync([journal] { journal->add("before"); });
    utilityQueueAsync([journal] {
        const auto response = Alert{.messageText = "Go on?", .buttonTitles = {"No", "Yes"}}.runModal();
        journal->add("the caller sees " + std::to_string(response));
    });
    const BackgroundWork work = desktop.startUtilityItem();
    desktop.runMainQueueUntil([&work] { return work.isFinished(); });
    EXPECT_EQ(journal->entries(), (std::vector<std::string>{"before", "alert \"Go on?\" [No|Yes]",
                                                            "alert answered 1001", "the caller sees 1001"}));
    ASSERT_EQ(desktop.shownAlerts().size(), 1U);
    EXPECT_FALSE(desktop.shownAlerts().front().raisedOnMainThread);
}

TEST(TestDesktopTest, AnAlertThatNobodyExpectsFailsTheTest) {
    const auto raise = [] {
        const TestDesktop desktop;
        static_cast<void>(Alert{.messageText = "Surprise", .buttonTitles = {"OK"}}.runModal());
    };
    EXPECT_NONFATAL_FAILURE(raise(), "nobody expected the alert \"Surprise\"");
}

TEST(TestDesktopTest, AnExpectedAlertThatNeverComesFailsTheTest) {
    const auto expectInVain = [] { TestDesktop().answerNextAlert(kAlertFirstButtonReturn); };
    EXPECT_NONFATAL_FAILURE(expectInVain(), "1 expected alert(s) never came");
}

TEST(TestDesktopTest, TheEndOfTheProcessIsSeenFromWhicheverThreadItComes) {
    TestDesktop desktop;
    utilityQueueAsync([] { platform::endProcess(2); });
    EXPECT_EQ(desktop.runUtilityItem(), 2);
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 2);

    mainQueueAsync([] { platform::endProcess(1); });
    EXPECT_THROW(desktop.drainMainQueue(), ProcessEnded);
    EXPECT_EQ(desktop.journal()->entries(), (std::vector<std::string>{"process ended 2", "process ended 1"}));
}

TEST(TestDesktopTest, WorkThatComesBetweenTwoDesktopsIsDropped) {
    mainQueueAsync([] { FAIL() << "ran in a desktop made later"; });
    TestDesktop desktop;
    desktop.drainMainQueue();
    EXPECT_TRUE(desktop.journal()->entries().empty());
}

TEST(TestDesktopTest, ControlsRecordEachCall) {
    TestDesktop desktop;
    const auto controls = makeRecordingControls(desktop.journal());
    controls.progressBar->setDoubleValue(-std::numeric_limits<double>::infinity());
    controls.textStep->setTextColor({.red = 0.0, .green = 95.0 / 255.0, .blue = 0.5, .alpha = 1.0});
    controls.cancelButton->setEnabled(false);
    desktop.drainMainQueue();
    EXPECT_EQ(
        desktop.journal()->entries(),
        (std::vector<std::string>{"progressBar value -inf", "textStep color 0 0.37254901960784315 0.5 1",
                                  "cancelButton disabled"}));
}

TEST(TestDesktopTest, ControlsRefuseOtherThreads) {
    const TestDesktop desktop;
    const auto controls = makeRecordingControls(desktop.journal());
    const auto changeElsewhere = [&controls] {
        BackgroundWork([&controls] { controls.textStep->setStringValue("x"); }).wait();
    };
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(changeElsewhere(), "textStep was changed outside the main thread");
}

} // namespace
} // namespace orvane::test
