#include "app/AppDelegate.h"
#include "app/RunApplication.h"
#include "log/Logger.h"
#include "platform/WindowUpdates.h"
#include "sender/EngineMessageSender.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/ControllerTest.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <thread>
#include <unistd.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

constexpr char kConsent[] = "alert \"Voulez-vous vraiment désinstaller les logiciels Varlen ?\" [Non|Oui]";

class StartUpTest : public ControllerTest {
protected:
    /// The options as the engine will be given them.
    Lines passedOn() const { return controller->orvaneArguments.load(); }

    /// Sends one message to the running receiving loop and waits until it changed the window.
    void expectShown(EngineMessageSender& sender, const std::string& text) {
        sender.send(EngineMessageType::step, text);
        desktop.runMainQueueUntil(
            [&] { return desktop.journal()->contains("textStep text \"" + text + "\""); });
    }
};

TEST_F(StartUpTest, TheWindowIsPaintedInItsColour) {
    controller->awakeFromNib();
    EXPECT_EQ(journal(), Lines{"layer background 0 0.37254901960784315 0.5411764705882353 1"});
}

TEST_F(StartUpTest, AViewWithoutALayerKeepsItsLook) {
    controls.layer.reset();
    controller->awakeFromNib();
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(StartUpTest, TheServiceNameEndsInTenRandomCharacters) {
    const std::string prefix = "kestrix.orvane.bootstrap.";
    deployment.values.serviceNamePrefix = prefix;
    controller->viewDidLoad();
    const std::string name = controller->machPortName;
    ASSERT_EQ(name.substr(0, prefix.size()), prefix);
    EXPECT_EQ(name.size(), 35U);
    EXPECT_TRUE(std::all_of(name.begin() + 25, name.end(),
                            [](unsigned char letter) { return std::isalnum(letter); }));

    const auto other = std::make_shared<ViewController>(deployment.values);
    other->viewDidLoad();
    EXPECT_NE(other->machPortName, name);
}

TEST_F(StartUpTest, ARegisteredServiceIsListenedTo) {
    startUp();
    EXPECT_GE(controller->machPort, 0);
    ASSERT_EQ(desktop.waitingUtilityItems(), 1U);
    BackgroundWork loop = desktop.startUtilityItem();
    EngineMessageSender sender(controller->machPortName);
    expectShown(sender, "first");
    expectShown(sender, "second");
    sender.send(EngineMessageType::end, "0");
    EXPECT_EQ(loop.wait(), 0);
}

/// The receiving loop of a run whose main thread stands still from the fatal alert on.
class HeldRunTest : public StartUpTest {
protected:
    HeldRunTest() {
        startUp();
        forgetStartUp();
        loop.emplace(desktop.startUtilityItem());
        sender.emplace(controller->machPortName);
    }

    void raiseFatalError() { sender->send(EngineMessageType::end, "broken"); }

    void sendMany(EngineMessageType type) {
        for (std::size_t number = 0; number < 2 * platform::kMostUpdatesWaiting; ++number) {
            sender->send(type, std::to_string(number % 2));
        }
    }

    void expectEnd(const std::string& code, int status) {
        sender->send(EngineMessageType::end, code);
        EXPECT_EQ(loop->wait(), status);
    }

    std::optional<EngineMessageSender> sender;
    std::optional<BackgroundWork> loop;
};

TEST_F(HeldRunTest, AChangedCancelButtonKeepsNoEndFromBeingHeard) {
    raiseFatalError();
    sender->send(EngineMessageType::cancelButton, "0");
    expectEnd("0", 0);
}

TEST_F(HeldRunTest, AFloodKeepsNoEndFromBeingHeard) {
    raiseFatalError();
    sendMany(EngineMessageType::step);
    sendMany(EngineMessageType::cancelButton);
    sendMany(static_cast<EngineMessageType>(7));
    expectEnd("3", 2);
    EXPECT_LE(desktop.waitingMainItems(), 3U) << "the alert, the step and the button";
}

TEST_F(HeldRunTest, MessagesThatChangeNothingWaitForNobody) {
    sendMany(static_cast<EngineMessageType>(7));
    expectEnd("0", 0);
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
}

TEST_F(HeldRunTest, ALoopThatWaitsForRoomGoesOnWhenAnotherThreadRaisesAFatalError) {
    std::thread engine([this] { sendMany(EngineMessageType::step); });
    while (desktop.waitingMainItems() < platform::kMostUpdatesWaiting) {
        std::this_thread::yield();
    }
    controller->showFatalErrorAndQuit("broken");
    engine.join();
    expectEnd("0", 0);
}

TEST_F(StartUpTest, TheLoopGoesOnWhileConsentIsAsked) {
    controller->awakeFromNib();
    controller->viewDidLoad();
    const std::size_t alreadyWaiting = desktop.waitingMainItems();
    BackgroundWork loop = desktop.startUtilityItem();
    desktop.answerNextAlert([&](const platform::Alert&) {
        EngineMessageSender sender(controller->machPortName);
        for (std::size_t number = 0; number < 2 * platform::kMostUpdatesWaiting; ++number) {
            sender.send(EngineMessageType::step, std::to_string(number));
        }
        sender.send(EngineMessageType::end, "0");
        EXPECT_EQ(loop.wait(), 0);
        EXPECT_EQ(desktop.waitingMainItems(), alreadyWaiting + 1);
        return platform::kAlertSecondButtonReturn;
    });
    prepare({"--uninstall"});
}

TEST_F(StartUpTest, WithoutAServiceTheRunGoesOnUnheard) {
    deployment.values.serviceNamePrefix.assign(200, 'x');
    startUp();
    EXPECT_LT(controller->machPort, 0);
    EXPECT_EQ(desktop.waitingUtilityItems(), 0U);
    EXPECT_EQ(passedOn(), Lines{"/somewhere/OrvaneBootstrap"});
}

TEST_F(StartUpTest, TheReceivingLoopDoesNotKeepTheControllerBeforeItRuns) {
    startUp();
    desktop.drainMainQueue();
    controller.reset();
    EXPECT_EQ(desktop.runUtilityItem(), std::nullopt);
}

TEST_F(StartUpTest, AMessageThatIsNotUtf8IsInvalidInput) {
    const auto receiveGarbage = [this] {
        startUp();
        EngineMessageSender(controller->machPortName).send(EngineMessageType::step, "\xC3\x28");
        desktop.runUtilityItem();
    };
    EXPECT_DEATH(receiveGarbage(), "invalid input: an engine message is not valid UTF-8");
}

/// The line that says that the log cannot be opened is printed while it is being opened.
TEST_F(StartUpTest, TheLoggerIsThereBeforeItsLogIsOpened) {
    writeFile(deployment.values.logRoot, "a file in the way");
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const int standardOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    ASSERT_EQ(dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
    std::thread reader([this, end = ends[0]] {
        std::array<char, 1> character{};
        EXPECT_EQ(read(end, character.data(), 1), 1);
        EXPECT_EQ(character[0], 'E') << "of 'Error initializing logger'";
        const auto runLogger = controller->logger.load();
        ASSERT_NE(runLogger, nullptr);
        EXPECT_EQ(runLogger->GetCurrentTimeString().size(), 19U);
    });
    controller->viewWillAppear();
    reader.join();
    dup2(standardOutput, STDOUT_FILENO);
    for (const int end : {ends[0], ends[1], standardOutput}) {
        close(end);
    }
}

TEST_F(StartUpTest, WithOptionsTheOwnPathIsNotPassedOn) {
    startUp({"--foo", "bar"});
    EXPECT_EQ(passedOn(), (Lines{"--foo", "bar"}));
    EXPECT_FALSE(controller->uninstall);
}

TEST_F(StartUpTest, WithoutOptionsTheOwnPathIsPassedOnAndNothingIsAsked) {
    startUp();
    EXPECT_EQ(passedOn(), Lines{"/somewhere/OrvaneBootstrap"});
    EXPECT_FALSE(controller->uninstall);
    EXPECT_TRUE(desktop.shownAlerts().empty());
}

TEST_F(StartUpTest, WithoutAnyArgumentNothingIsPassedOn) {
    desktop.setProcessArguments({});
    controller->viewWillAppear();
    EXPECT_EQ(passedOn(), Lines{});
}

TEST_F(StartUpTest, TheUninstallOptionAsksForConsent) {
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    startUp({"--uninstall"});
    EXPECT_EQ(passedOn(), Lines{"--uninstall"});
    EXPECT_TRUE(controller->uninstall);
    EXPECT_TRUE(desktop.journal()->contains(kConsent));
    EXPECT_EQ(desktop.shownAlerts().front().alert.style, platform::AlertStyle::warning);
}

TEST_F(StartUpTest, TheUninstallOptionMayStandAnywhere) {
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    startUp({"a", "--uninstall", "b"});
    EXPECT_TRUE(controller->uninstall);
    EXPECT_EQ(passedOn(), (Lines{"a", "--uninstall", "b"}));
}

TEST_F(StartUpTest, OnlyTheExactOptionUninstalls) {
    startUp({"--UNINSTALL", "--uninstall=1", "uninstall", " --uninstall"});
    EXPECT_FALSE(controller->uninstall);
}

TEST_F(StartUpTest, AProgramNamedLikeTheOptionUninstallsWhenStartedAlone) {
    desktop.setProcessArguments({"--uninstall"});
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    controller->viewWillAppear();
    EXPECT_TRUE(controller->uninstall);
}

TEST_F(StartUpTest, EachModeHasItsFolderOfLogs) {
    startUp();
    EXPECT_TRUE(std::filesystem::is_directory(deployment.values.logRoot / "Installations"));
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    startUp({"--uninstall"});
    EXPECT_TRUE(std::filesystem::is_directory(deployment.values.logRoot / "Uninstallations"));
}

TEST_F(StartUpTest, TheLanguageIsChosenWithTheLogOpen) {
    startUp();
    EXPECT_EQ(logLines(), (Lines{"Checking preferred languages", "Found fr"}));
}

TEST_F(StartUpTest, ALogThatCannotBeOpenedHoldsNothingUp) {
    writeFile(deployment.values.logRoot, "a file where the folder should be");
    CaptureStandardOutput output;
    startUp();
    const std::string printed = output.finish();
    EXPECT_NE(printed.find("Error initializing logger: "), std::string::npos);
    EXPECT_NE(printed.find("Found fr\n"), std::string::npos);
    EXPECT_NE(controller->logger.load(), nullptr);
    EXPECT_EQ(controller->localeName.load(), "fr-ch");
}

TEST_F(StartUpTest, RefusedConsentEndsTheRunBeforeAnythingIsDecided) {
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_THROW(startUp({"--uninstall"}), ProcessEnded);
    EXPECT_EQ(desktop.journal()->lastAfter("process ended "), "2");
    EXPECT_EQ(logLines().back(), "User didn't want to start the procedure");
    EXPECT_EQ(desktop.waitingUtilityItems(), 1U) << "only the receiving loop was submitted";
}

TEST_F(StartUpTest, OnlyTheFirstButtonRefusesConsent) {
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn + 1);
    startUp({"--uninstall"});
    EXPECT_FALSE(logHas("User didn't want to start the procedure"));
}

TEST_F(StartUpTest, ConsentIsAskedInTheChosenLanguage) {
    const EnvironmentVariable german("LANGUAGE", "de_CH");
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    startUp({"--uninstall"});
    EXPECT_TRUE(desktop.journal()->contains("alert \"Wollen Sie die Software entfernen ?\" [Nein|Ja]"));
}

TEST_F(StartUpTest, TheWindowIsStyledOnceModeAndLanguageAreKnown) {
    const EnvironmentVariable german("LANGUAGE", "de_CH");
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    startUp({"--uninstall"});
    desktop.journal()->clear();
    desktop.drainMainQueue();
    EXPECT_EQ(journal(),
              (Lines{"textStep text \"Die Desinstallation wird vorbereitet...\"", "textStep color 1 1 1 1",
                     "textStep font size 16", "textError text \"\"", "textError color 1 1 1 1",
                     "textError font size 12", "cancelButton title \"Abbrechen\""}));
}

TEST_F(StartUpTest, AnInstallationBeginsWithItsOwnStepText) {
    startUp();
    desktop.drainMainQueue();
    EXPECT_TRUE(desktop.journal()->contains("textStep text \"Préparation de l'installation...\""));
}

TEST_F(StartUpTest, StylingAWindowWhoseTextsAreGoneIsAProgrammingError) {
    startUp();
    controls.textError.reset();
    EXPECT_DEATH(desktop.drainMainQueue(), "main window");
}

/// The whole program, up to the platform.
class RunApplicationTest : public ControllerTest {
protected:
    int run(std::vector<std::string> arguments) {
        std::vector<char*> vector(arguments.size());
        std::transform(arguments.begin(), arguments.end(), vector.begin(),
                       [](std::string& argument) { return argument.data(); });
        return runApplication(static_cast<int>(vector.size()), vector.data(), deployment.values);
    }
};

TEST_F(RunApplicationTest, StartUpTakesEffectInItsOrder) {
    bool ran = false;
    desktop.setApplicationScript([&](platform::ApplicationDelegate&, platform::ViewControllerBase&) {
        desktop.drainMainQueue();
        ran = true;
    });
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    EXPECT_EQ(run({"OrvaneBootstrap", "--uninstall"}), 0);
    ASSERT_TRUE(ran);
    const auto position = [this](const std::string& entry) { return desktop.journal()->positionOf(entry); };
    const std::vector<std::size_t> order{
        position("layer background 0 0.37254901960784315 0.5411764705882353 1"),
        position(kConsent),
        position("progressBar min 0"),
        position("textStep text \"Préparation de a désinstallation...\""),
        position("cancelButton title \"Annuler\""),
        desktop.journal()->entries().size(),
    };
    EXPECT_EQ(std::adjacent_find(order.begin(), order.end(), std::greater_equal<>()), order.end());
    EXPECT_EQ(desktop.waitingUtilityItems(), 2U) << "the receiving loop and the decision";
}

TEST_F(RunApplicationTest, QuitIsAskedInTheSameWordsInEveryLanguageAndMode) {
    const EnvironmentVariable german("LANGUAGE", "de_CH");
    AppDelegate delegate;
    CaptureStandardOutput output;
    desktop.answerNextAlert(platform::kAlertFirstButtonReturn);
    EXPECT_EQ(delegate.applicationShouldTerminate(), platform::TerminateReply::cancel);
    EXPECT_EQ(output.text(), "returnCode:  1000\n");
    EXPECT_EQ(journal().front(), "alert \"Voulez-vous quitter l'installation?\" [NO|YES]");
}

TEST_F(RunApplicationTest, AnyOtherAnswerThanTheFirstButtonQuits) {
    AppDelegate delegate;
    CaptureStandardOutput output;
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    EXPECT_EQ(delegate.applicationShouldTerminate(), platform::TerminateReply::now);
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn + 1);
    EXPECT_EQ(delegate.applicationShouldTerminate(), platform::TerminateReply::now);
    EXPECT_EQ(output.finish(), "returnCode:  1001\nreturnCode:  1002\n");
}

TEST_F(RunApplicationTest, QuittingAndLaunchingDoNothingOfTheirOwn) {
    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    delegate.applicationWillTerminate();
    EXPECT_EQ(journal(), Lines{});
    EXPECT_EQ(desktop.waitingMainItems() + desktop.waitingUtilityItems(), 0U);
}

TEST_F(RunApplicationTest, TheQuitCommandIsNamedInTheChosenLanguage) {
    const EnvironmentVariable german("LANGUAGE", "de_CH");
    startUp();
    EXPECT_EQ(controller->quitCommandTitle(), "Schliessen");
    EXPECT_EQ(controller->languageTag(), "de-ch");
}

} // namespace
} // namespace orvane::test
