#include "platform/Process.h"
#include "sender/EngineMessageTypes.h"
#include "tests/support/Gate.h"
#include "tests/support/NamedPipe.h"
#include "tests/support/RunTest.h"

#include <algorithm>
#include <limits>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;
using platform::kAlertFirstButtonReturn;
using platform::kAlertSecondButtonReturn;

constexpr std::int32_t kProgress = 0;
constexpr std::int32_t kStep = 1;
constexpr std::int32_t kNetwork = 2;
constexpr std::int32_t kEnd = 3;
constexpr std::int32_t kError = 4;
constexpr std::int32_t kRestart = 5;
constexpr std::int32_t kCancelButton = 6;

/// Texts of which none is the number that its writer may have meant.
const Lines& notNumbers() {
    static const Lines texts{
        "", " 0", "0 ", "0\n", "1\r\n", "zero", "0x0", "1.0", "+", "+-1", "9223372036854775808"};
    return texts;
}

class EngineMessagesTest : public RunTest {
protected:
    /// Handles a message as the receiving loop does, on a thread of its own; the status if it ended the
    /// process.
    std::optional<int> receive(std::int32_t type, const std::string& text) {
        return BackgroundWork([&] { controller->onCopyData(type, text); }).wait();
    }

    /// What a message changes in the window.
    Lines effectsOf(std::int32_t type, const std::string& text) {
        desktop.journal()->clear();
        EXPECT_EQ(receive(type, text), std::nullopt);
        desktop.drainMainQueue();
        return journal();
    }

    void expectIgnored(std::int32_t type, const std::string& text) {
        EXPECT_EQ(effectsOf(type, text), Lines{}) << "type " << type << ": \"" << text << '"';
    }
};

TEST_F(EngineMessagesTest, ANumberOfType0IsThePositionOfTheBar) {
    EXPECT_EQ(effectsOf(kProgress, "42"), Lines{"progressBar value 42"});
    EXPECT_EQ(effectsOf(kProgress, "+7"), Lines{"progressBar value 7"});
}

TEST_F(EngineMessagesTest, APositionOutsideTheBarIsPassedOn) {
    EXPECT_EQ(effectsOf(kProgress, "150"), Lines{"progressBar value 150"});
    EXPECT_EQ(effectsOf(kProgress, "-1"), Lines{"progressBar value -1"});
}

TEST_F(EngineMessagesTest, AProgressThatIsNoNumberIsIgnored) {
    for (const std::string& text : notNumbers()) {
        expectIgnored(kProgress, text);
    }
    expectIgnored(kProgress, " 42");
    expectIgnored(kProgress, "42\n");
}

TEST_F(EngineMessagesTest, TheTextOfType1IsTheStepAsItStands) {
    EXPECT_EQ(effectsOf(kStep, "Téléchargement <b>1/3</b>\n"),
              Lines{"textStep text \"Téléchargement <b>1/3</b>\n\""});
    EXPECT_EQ(effectsOf(kStep, ""), Lines{"textStep text \"\""});
}

TEST_F(EngineMessagesTest, NetworkCondition0ClearsTheErrorLine) {
    EXPECT_EQ(effectsOf(kNetwork, "0"), Lines{"textError text \"\""});
}

TEST_F(EngineMessagesTest, NetworkCondition1SaysThatThereIsNoNetwork) {
    EXPECT_EQ(effectsOf(kNetwork, "1"), Lines{"textError text \"Aucune connexion réseau disponible\""});
}

TEST_F(EngineMessagesTest, NetworkCondition2SaysThatTheConnectionIsMetered) {
    EXPECT_EQ(effectsOf(kNetwork, "2"),
              Lines{"textError text \"Le téléchargement a été interrompu car la connexion est limitée et "
                    "peut engendrer des coûts.\""});
}

TEST_F(EngineMessagesTest, OtherNetworkConditionsAreIgnored) {
    for (const char* text : {"3", "5", "-1"}) {
        expectIgnored(kNetwork, text);
    }
    for (const std::string& text : notNumbers()) {
        expectIgnored(kNetwork, text);
    }
}

TEST_F(EngineMessagesTest, EndCode0EndsWithStatus0AtOnce) {
    EXPECT_EQ(receive(kEnd, "0"), 0);
    EXPECT_EQ(journal(), Lines{"process ended 0"});
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
    EXPECT_EQ(server.requestLines(), Lines{});
}

TEST_F(EngineMessagesTest, EndCode3EndsWithStatus2AtOnce) {
    EXPECT_EQ(receive(kEnd, "3"), 2);
    EXPECT_EQ(journal(), Lines{"process ended 2"});
}

TEST_F(EngineMessagesTest, EndCode1OfAnInstallationIsShownAndTheRunGoesOn) {
    EXPECT_EQ(effectsOf(kEnd, "1"), Lines{"textError text \"L'installation s'est terminée correctement. "
                                          "Voulez-vous redémarrer la machine ?\""});
}

TEST_F(EngineMessagesTest, EndCode1OfAnUninstallationHasItsOwnWords) {
    controller->uninstall = true;
    EXPECT_EQ(effectsOf(kEnd, "1"), Lines{"textError text \"La désinstallation s'est terminée correctement. "
                                          "Voulez-vous redémarrer la machine ?\""});
}

TEST_F(EngineMessagesTest, OtherEndCodesAreIgnored) {
    for (const char* text : {"2", "4", "-1", "100"}) {
        expectIgnored(kEnd, text);
    }
}

TEST_F(EngineMessagesTest, AnEndThatIsNoNumberIsAFatalErrorWithThatText) {
    EXPECT_EQ(receive(kEnd, "Le disque est plein"), std::nullopt);
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
    expectFatalError("Le disque est plein");
}

TEST_F(EngineMessagesTest, AnEndWithoutAnyTextIsAFatalErrorWithoutAnyText) {
    receive(kEnd, "");
    expectFatalError("");
}

TEST_F(EngineMessagesTest, AnAlmostNumberIsAFatalErrorToo) {
    receive(kEnd, "0\n");
    expectFatalError("0\n");
}

TEST_F(EngineMessagesTest, TheCrashReportIsSentWhileTheFatalAlertStands) {
    const Gate mayAnswer;
    server.answer(kCrashReport, [mayAnswer](LoopbackConnection& connection) {
        EXPECT_TRUE(mayAnswer.wait());
        connection.send(response(""));
    });
    const BackgroundWork loop([this] { controller->onCopyData(kEnd, "broken"); });
    desktop.answerNextAlert([&](const platform::Alert& alert) {
        EXPECT_EQ(alert.messageText, "broken");
        EXPECT_FALSE(loop.isFinished()) << "the report has no answer yet";
        return kAlertFirstButtonReturn;
    });
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
    mayAnswer.open();
}

TEST_F(EngineMessagesTest, FurtherFatalMessagesAddNoAlertThatNobodyWillSee) {
    receive(kEnd, "first");
    receive(kEnd, "second");
    EXPECT_EQ(desktop.waitingMainItems(), 1U);
    EXPECT_EQ(server.requestLines(), (Lines{"POST /crashreport", "POST /crashreport"}));
    expectFatalError("first");
}

TEST_F(EngineMessagesTest, TheTextOfType4IsTheErrorLineAsItStands) {
    EXPECT_EQ(effectsOf(kError, "Accès refusé"), Lines{"textError text \"Accès refusé\""});
    EXPECT_EQ(effectsOf(kError, "7"), Lines{"textError text \"7\""});
    EXPECT_EQ(effectsOf(kError, ""), Lines{"textError text \"\""});
}

TEST_F(EngineMessagesTest, Type6EnablesAndDisablesTheCancelButtonWithoutWaitingForTheMainThread) {
    EXPECT_EQ(receive(kCancelButton, "0"), std::nullopt);
    EXPECT_EQ(receive(kStep, "between"), std::nullopt);
    EXPECT_EQ(receive(kCancelButton, "1"), std::nullopt);
    EXPECT_EQ(journal(), Lines{});
    desktop.drainMainQueue();
    EXPECT_EQ(journal(),
              (Lines{"cancelButton disabled", "textStep text \"between\"", "cancelButton enabled"}));
}

TEST_F(EngineMessagesTest, OtherStatesOfTheCancelButtonAreIgnored) {
    for (const char* text : {"2", "-1", "true"}) {
        expectIgnored(kCancelButton, text);
    }
    for (const std::string& text : notNumbers()) {
        expectIgnored(kCancelButton, text);
    }
}

TEST_F(EngineMessagesTest, ACancelButtonThatIsGoneIsAProgrammingErrorOnlyWhenItIsNeeded) {
    controls.cancelButton.reset();
    expectIgnored(kCancelButton, "2");
    EXPECT_DEATH(receive(kCancelButton, "1"), "programming error: the Cancel button is gone");
}

TEST_F(EngineMessagesTest, OtherTypesAreIgnored) {
    for (const std::int32_t type :
         {kFirstUnassignedEngineMessageType, -1, 256, std::numeric_limits<std::int32_t>::max(),
          std::numeric_limits<std::int32_t>::min()}) {
        expectIgnored(type, "0");
        expectIgnored(type, "text");
    }
}

TEST_F(EngineMessagesTest, MessagesReachTheWindowInTheirOrder) {
    receive(kStep, "first");
    receive(kProgress, "1");
    receive(kError, "second");
    desktop.drainMainQueue();
    EXPECT_EQ(journal(),
              (Lines{"textStep text \"first\"", "progressBar value 1", "textError text \"second\""}));
}

// The restart question.

class RestartQuestionTest : public EngineMessagesTest {
protected:
    /// The engine that a restart starts notes its arguments.
    RestartQuestionTest() { writeFile(deployment.engine(), engineReporting("14.0")); }

    /// Handles the message and has its question answered; the status if that ended the process.
    std::optional<int> ask(const std::string& text, std::int64_t response) {
        desktop.answerNextAlert(response);
        BackgroundWork loop([&] { controller->onCopyData(kRestart, text); });
        desktop.runMainQueueUntil([&loop] { return loop.isFinished(); });
        return loop.wait();
    }

    /// The argument of the newly started engine that follows `name`.
    std::string argumentAfter(const std::string& name) {
        const Lines arguments = argumentsOf(deployment.engine(), desktop);
        const auto found = std::find(arguments.begin(), arguments.end(), name);
        return arguments.end() - found < 2 ? std::string() : found[1];
    }
};

TEST_F(RestartQuestionTest, OnlyTheQuestionIsShownWithYesBeforeNo) {
    EXPECT_EQ(ask("07Redémarrer ?", kAlertSecondButtonReturn), 2);
    ASSERT_EQ(desktop.shownAlerts().size(), 1U);
    const ShownAlert shown = desktop.shownAlerts().front();
    EXPECT_EQ(shown.alert.messageText, "Redémarrer ?");
    EXPECT_EQ(shown.alert.buttonTitles, (Lines{"Oui", "Non"}));
    EXPECT_EQ(shown.alert.style, platform::AlertStyle::warning);
    EXPECT_FALSE(shown.raisedOnMainThread);
}

TEST_F(RestartQuestionTest, YesStartsTheEngineAtThatStep) {
    EXPECT_EQ(ask("07Redémarrer ?", kAlertFirstButtonReturn), std::nullopt);
    EXPECT_EQ(controller->lastOrvaneStep, 7);
    EXPECT_EQ(argumentAfter("--step"), "7");
}

TEST_F(RestartQuestionTest, TheRestartedEngineIsGivenEverythingElseAsBefore) {
    controller->orvaneArguments.store({"--option"});
    controller->spawnOrvane();
    Lines expected = argumentsOf(deployment.engine(), desktop);
    std::filesystem::remove(deployment.engine().string() + ".arguments");
    ASSERT_EQ(expected.at(10), "0");
    expected[10] = "12";
    EXPECT_EQ(ask("12?", kAlertFirstButtonReturn), std::nullopt);
    EXPECT_EQ(argumentsOf(deployment.engine(), desktop), expected);
}

TEST_F(RestartQuestionTest, YesInterruptsTheRunningEngineFirst) {
    const std::string engine = deployment.engine().string();
    writeFile(engine, "#!/bin/sh\n"
                      "trap 'touch \"$0.interrupted\"; exit' INT\n"
                      "echo ready >\"$0.arguments\"\n"
                      "while [ -e \"$0\" ]; do sleep 0.01; done\n");
    controller->spawnOrvane();
    const auto first = controller->orvaneProcessHandle.load();
    argumentsOf(engine, desktop);
    std::filesystem::remove(engine + ".arguments");
    writeFile(engine + ".new", engineReporting("14.0"));
    std::filesystem::rename(engine + ".new", engine);

    EXPECT_EQ(ask("03?", kAlertFirstButtonReturn), std::nullopt);
    desktop.runMainQueueUntil([&engine] { return std::filesystem::exists(engine + ".interrupted"); });
    EXPECT_EQ(argumentAfter("--step"), "3");
    EXPECT_NE(controller->orvaneProcessHandle.load(), first);
}

TEST_F(RestartQuestionTest, NoEndsWithStatus2AndLeavesTheEngineAlone) {
    const NamedPipe pipe(deployment.folder() / "pipe");
    writeFile(deployment.engine(), "#!/bin/sh\nread status <" + pipe.path() + "\nexit \"$status\"\n");
    controller->spawnOrvane();
    EXPECT_EQ(ask("07?", kAlertSecondButtonReturn), 2);
    EXPECT_EQ(controller->lastOrvaneStep, 0);
    pipe.send("5\n");
    EXPECT_EQ(controller->orvaneProcessHandle.load()->waitUntilExit(), 5) << "it was not interrupted";
    EXPECT_EQ(logLines().size(), 1U) << "no second engine was started";
}

TEST_F(RestartQuestionTest, TheLoopIsHeldUpUntilTheAnswer) {
    desktop.answerNextAlert(kAlertFirstButtonReturn);
    BackgroundWork loop([this] { controller->onCopyData(kRestart, "01?"); });
    desktop.runMainQueueUntil([this] { return desktop.waitingMainItems() == 1; });
    EXPECT_FALSE(loop.isFinished());
    desktop.runMainQueueUntil([&loop] { return loop.isFinished(); });
    EXPECT_EQ(argumentAfter("--step"), "1");
}

TEST_F(RestartQuestionTest, TheQuestionMayBeEmpty) {
    EXPECT_EQ(ask("12", kAlertFirstButtonReturn), std::nullopt);
    EXPECT_EQ(desktop.shownAlerts().front().alert.messageText, "");
    EXPECT_EQ(argumentAfter("--step"), "12");
}

TEST_F(RestartQuestionTest, ASignMayTakeThePlaceOfTheFirstDigit) {
    EXPECT_EQ(ask("+7?", kAlertFirstButtonReturn), std::nullopt);
    EXPECT_EQ(argumentAfter("--step"), "7");
    std::filesystem::remove(deployment.engine().string() + ".arguments");
    EXPECT_EQ(ask("-1?", kAlertFirstButtonReturn), std::nullopt);
    EXPECT_EQ(argumentAfter("--step"), "-1");
}

TEST_F(RestartQuestionTest, AnEngineThatCannotBeStartedAgainIsAFatalError) {
    std::filesystem::remove(deployment.engine());
    desktop.answerNextAlert(kAlertFirstButtonReturn);
    desktop.answerNextAlert(kAlertFirstButtonReturn);
    const BackgroundWork loop([this] { controller->onCopyData(kRestart, "07?"); });
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
    ASSERT_EQ(desktop.shownAlerts().size(), 2U);
    EXPECT_EQ(desktop.shownAlerts().back().alert.messageText, kInstallationFailed);
}

TEST_F(RestartQuestionTest, ATextTooShortForAStepIsAProgrammingError) {
    for (const char* text : {"", "7"}) {
        EXPECT_DEATH(receive(kRestart, text),
                     "invalid input: a restart question is shorter than its step number");
    }
}

TEST_F(RestartQuestionTest, AStepThatIsNoNumberIsAProgrammingErrorOnceItIsNeeded) {
    for (const char* text : {" 7?", "7x?", "x7?", "--?"}) {
        EXPECT_DEATH(ask(text, kAlertFirstButtonReturn),
                     "invalid input: a restart question does not begin with a step number");
    }
    EXPECT_EQ(ask("7x?", kAlertSecondButtonReturn), 2);
}

} // namespace
} // namespace orvane::test
