#include "platform/Files.h"
#include "tests/support/ControllerTest.h"
#include "tests/support/TestVendor.h"

#include <algorithm>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;
using platform::kAlertFirstButtonReturn;
using platform::kAlertSecondButtonReturn;

constexpr char kCancelInstallation[] = "alert \"Voulez-vous quitter l'installation ?\" [Non|Oui]";
constexpr char kCancelUninstallation[] = "alert \"Voulez-vous quitter la désinstallation ?\" [Non|Oui]";

/// Runs from the window's appearance on, against a vendor. The engines are scripts that note their arguments.
class InstallerFlowTest : public ControllerTest {
protected:
    InstallerFlowTest() {
        deployment.values.fileDescriptionUrl =
            vendor.origin() + "/downloadinstaller?os=darwin&product=varlen";
        deployment.values.crashReportUrl = vendor.origin() + "/crashreport";
    }

    void prepareUninstallation() {
        desktop.answerNextAlert(kAlertSecondButtonReturn);
        prepare({"--uninstall"});
    }

    void installEngine(const std::string& program) const { writeFile(deployment.engine(), program); }

    /// Lets the window appear and the decision be made.
    void decide() {
        controller->viewDidAppear();
        EXPECT_EQ(desktop.runUtilityItem(), std::nullopt);
    }

    Lines startedWith() { return argumentsOf(deployment.engine(), desktop); }

    void expectStarted() { EXPECT_EQ(startedWith().front(), "--pid"); }

    /// The run ends in this alert, with the status of a fatal error, and the engine was not started.
    void expectFatalError(std::int64_t stringID) {
        const std::string text = controller->loadTranslatedString(stringID);
        desktop.answerNextAlert([&](const platform::Alert& alert) {
            EXPECT_EQ(alert.messageText, text);
            EXPECT_EQ(alert.style, platform::AlertStyle::critical);
            return kAlertFirstButtonReturn;
        });
        EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
        EXPECT_FALSE(logHasLineStarting("Spawning orvane with args --pid"));
    }

    bool engineWasFetched() const {
        const Lines requests = vendor.requests();
        return std::any_of(requests.begin(), requests.end(),
                           [](const std::string& target) { return target.starts_with("/varlen/setup/"); });
    }

    void cutNetwork() {
        deployment.values.fileDescriptionUrl = std::string(TestDeployment::kNobody) + "/downloadinstaller";
        deployment.values.crashReportUrl = std::string(TestDeployment::kNobody) + "/crashreport";
    }

    TestVendor vendor;
};

TEST_F(InstallerFlowTest, TheBarIsReadyAndTheProgramInFrontWhenTheWindowAppears) {
    controller->viewDidAppear();
    EXPECT_EQ(journal(), (Lines{"progressBar min 0", "progressBar max 100", "progressBar value 0",
                                "activate ignoring other apps", "activate", "window movable",
                                "activity \"Installation in progress\""}));
    EXPECT_EQ(desktop.waitingUtilityItems(), 1U);
}

TEST_F(InstallerFlowTest, TheSystemIsToldWhichWorkBeginsBeforeItDoes) {
    controller->uninstall = true;
    controller->viewDidAppear();
    EXPECT_EQ(journal().back(), "activity \"Uninstallation in progress\"");
}

TEST_F(InstallerFlowTest, AWindowWithoutItsBarIsAProgrammingError) {
    controls.progressBar.reset();
    EXPECT_DEATH(controller->viewDidAppear(), "progress bar");
}

TEST_F(InstallerFlowTest, NothingIsDecidedForAControllerThatIsGone) {
    controller->viewDidAppear();
    controller.reset();
    EXPECT_EQ(desktop.runUtilityItem(), std::nullopt);
    EXPECT_EQ(vendor.requests(), Lines{});
}

TEST_F(InstallerFlowTest, TheEngineLiesInTheFolderOfTheCapitalisedProduct) {
    prepare();
    cutNetwork();
    EXPECT_EQ(controller->initializeDownloads(), DownloadDecision::noDescription);
    const auto place = deployment.values.engineRoot / "Varlen" / "orvane" / "varlen-setup";
    EXPECT_EQ(controller->orvaneExeUrl.load(), place);
    const Lines log = logLines();
    ASSERT_GE(log.size(), 4U);
    EXPECT_EQ(log[2], "Initializing orvane download");
    EXPECT_EQ(log[3], "Orvane path is " + place.string());
}

TEST_F(InstallerFlowTest, WithoutDescriptionAndEngineTheUserReadsOfTheNetwork) {
    prepare();
    cutNetwork();
    decide();
    EXPECT_TRUE(logHas("Cannot download latest orvane, trying use existing orvane"));
    expectFatalError(4);
}

TEST_F(InstallerFlowTest, WithoutDescriptionTheEngineOfAnInstallationIsStartedUnchecked) {
    prepare();
    cutNetwork();
    installEngine(engineReporting("1.0"));
    decide();
    expectStarted();
    EXPECT_FALSE(logHasLineStarting("Checking if"));
}

TEST_F(InstallerFlowTest, WithoutDescriptionTheEngineOfAnUninstallationIsStartedUnchecked) {
    prepareUninstallation();
    cutNetwork();
    installEngine(engineReporting("1.0"));
    decide();
    EXPECT_EQ(startedWith().back(), "--uninstall");
    EXPECT_FALSE(logHasLineStarting("Checking if"));
}

TEST_F(InstallerFlowTest, AnEngineWithTheRightDigestIsUsedWhateverItsVersion) {
    prepare();
    const std::string program = engineReporting("0.0.1");
    vendor.publishEngine(program, "xor");
    installEngine(program);
    decide();
    expectStarted();
    EXPECT_TRUE(logHas("Using existing orvane"));
    EXPECT_FALSE(logHas("Checking if orvane versions match"));
    EXPECT_FALSE(engineWasFetched());
}

TEST_F(InstallerFlowTest, AnEngineOfTheDescribedVersionIsUsedWhateverItsDigest) {
    prepare();
    vendor.publishEngine(engineReporting("14.2.7"), "");
    installEngine(engineReporting("14.2.7") + "# patched by the vendor's support\n");
    decide();
    expectStarted();
    EXPECT_TRUE(logHas("Using existing orvane"));
    EXPECT_FALSE(engineWasFetched());
}

TEST_F(InstallerFlowTest, AnOlderEngineIsReplaced) {
    prepare();
    const std::string program = engineReporting("14.2.7");
    vendor.publishEngine(program, "");
    installEngine(engineReporting("14.2.6"));
    decide();
    expectStarted();
    EXPECT_TRUE(logHas("Downloading latest orvane"));
    EXPECT_EQ(contentsOf(deployment.engine()), program);
    EXPECT_FALSE(controller->isOrvaneEncrypted);
}

TEST_F(InstallerFlowTest, AMissingEngineIsDownloadedAndTheBarReachesItsEnd) {
    prepare();
    vendor.publishEngine(engineReporting("14.2.7"), "");
    decide();
    expectStarted();
    EXPECT_EQ(desktop.journal()->lastAfter("progressBar value "), "100");
    EXPECT_EQ(vendor.requests(),
              (Lines{"/downloadinstaller?os=darwin&product=varlen", "/varlen/setup/varlen-setup"}));
}

TEST_F(InstallerFlowTest, AnEncipheredEngineIsDeciphered) {
    prepare();
    const std::string program = engineReporting("14.2.7");
    vendor.publishEngine(program, "xor");
    decide();
    expectStarted();
    EXPECT_TRUE(controller->isOrvaneEncrypted);
    EXPECT_EQ(contentsOf(deployment.engine()), program);
    EXPECT_EQ(vendor.requests().back(), "/varlen/setup/varlen-setup.enc");
}

TEST_F(InstallerFlowTest, APackageIsInstalledByThePackageInstaller) {
    prepare();
    vendor.publishEngine(engineReporting("14.2.7"), "pkg");
    const auto installer = deployment.folder() / "bin" / "installer";
    writeFile(installer, "#!/bin/sh\n"
                         "printf '%s\\n' \"$@\" >\"$0.arguments\"\n"
                         "cp \"$4\" \"${4%.pkg}\"\n");
    std::filesystem::permissions(installer, std::filesystem::perms::owner_all);
    const EnvironmentVariable path("PATH", installer.parent_path().string() + ":/usr/bin:/bin");
    decide();
    expectStarted();
    EXPECT_TRUE(controller->isOrvaneEncrypted);
    EXPECT_EQ(contentsOf(installer.string() + ".arguments"),
              "-allowUntrusted\n-verboseR\n-pkg\n" + deployment.engine().string() + ".pkg\n-target\n/\n");
}

TEST_F(InstallerFlowTest, AnEarlierCipherIsForgottenByTheNextDecision) {
    prepare();
    cutNetwork();
    controller->isOrvaneEncrypted = true;
    controller->initializeDownloads();
    EXPECT_FALSE(controller->isOrvaneEncrypted);
}

TEST_F(InstallerFlowTest, ACipherInCapitalsEndsAnInstallation) {
    prepare();
    auto info = vendor.publishEngine(engineReporting("14.2.7"), "xor");
    info.EncryptionAlgorithm = "XOR";
    vendor.describe(info);
    decide();
    EXPECT_TRUE(logHas("Encryption algorithm XOR is unsupported"));
    expectFatalError(9);
    EXPECT_FALSE(engineWasFetched());
}

TEST_F(InstallerFlowTest, ACipherInCapitalsMakesAnUninstallationUseTheEngineThatIsThere) {
    prepareUninstallation();
    auto info = vendor.publishEngine(engineReporting("14.2.7"), "xor");
    info.EncryptionAlgorithm = "XOR";
    vendor.describe(info);
    installEngine(engineReporting("13.0"));
    decide();
    expectStarted();
    EXPECT_TRUE(logHas("process is uninstallation and orvane exists on the machine"));
    EXPECT_FALSE(controller->isOrvaneEncrypted);
}

TEST_F(InstallerFlowTest, AnotherMajorVersionEndsAnInstallationEvenWithAnEngineThere) {
    prepare();
    auto info = vendor.publishEngine(engineReporting("15.0"), "");
    info.Version = "15.0";
    vendor.describe(info);
    installEngine(engineReporting("15.0"));
    decide();
    expectFatalError(9);
}

TEST_F(InstallerFlowTest, AnotherMajorVersionMakesAnUninstallationUseTheEngineThatIsThere) {
    prepareUninstallation();
    auto info = vendor.publishEngine(engineReporting("15.0"), "");
    info.Version = "15.0";
    vendor.describe(info);
    installEngine(engineReporting("13.0"));
    decide();
    expectStarted();
    EXPECT_FALSE(engineWasFetched());
}

TEST_F(InstallerFlowTest, AnotherMajorVersionEndsAnUninstallationWithoutAnEngine) {
    prepareUninstallation();
    auto info = vendor.publishEngine(engineReporting("15.0"), "");
    info.Version = "15.0";
    vendor.describe(info);
    decide();
    EXPECT_TRUE(logHas("process is uninstallation, but orvane does not exist on the machine"));
    expectFatalError(9);
}

TEST_F(InstallerFlowTest, ADownloadThatIsNotTheDescribedFileIsBlamedOnAFirewall) {
    prepare();
    auto info = vendor.publishEngine(engineReporting("14.2.7"), "");
    info.Checksum.front() = info.Checksum.front() == '0' ? '1' : '0';
    vendor.describe(info);
    decide();
    expectFatalError(5);
}

TEST_F(InstallerFlowTest, WithoutALogTheDecisionIsTheSame) {
    vendor.publishEngine(engineReporting("14.2.7"), "pkg");
    EXPECT_EQ(controller->initializeDownloads(), DownloadDecision::download);
    EXPECT_TRUE(controller->isOrvaneEncrypted);
    EXPECT_FALSE(std::filesystem::exists(deployment.values.logRoot));
}

TEST_F(InstallerFlowTest, LookingForAnEngineWithoutALocationIsAProgrammingError) {
    controller->uninstall = true;
    EXPECT_DEATH(controller->tryUseExistingOrvane(), "location");
}

TEST_F(InstallerFlowTest, CancelAnsweredWithNoChangesNothing) {
    prepare();
    desktop.answerNextAlert(kAlertFirstButtonReturn);
    controller->cancelButtonClicked();
    EXPECT_EQ(journal(), (Lines{kCancelInstallation, "alert answered 1000"}));
}

TEST_F(InstallerFlowTest, CancelConfirmedBeforeTheEngineRunsEndsWithTwo) {
    prepare();
    desktop.answerNextAlert(kAlertSecondButtonReturn);
    EXPECT_THROW(controller->cancelButtonClicked(), ProcessEnded);
    EXPECT_EQ(desktop.journal()->lastAfter("process ended "), "2");
}

TEST_F(InstallerFlowTest, AnUninstallationHasItsOwnCancelQuestion) {
    prepareUninstallation();
    desktop.answerNextAlert(kAlertFirstButtonReturn);
    controller->cancelButtonClicked();
    EXPECT_TRUE(desktop.journal()->contains(kCancelUninstallation));
}

TEST_F(InstallerFlowTest, CancelConfirmedInterruptsTheEngine) {
    prepare();
    cutNetwork();
    installEngine("#!/bin/sh\n"
                  "trap 'touch \"$0.interrupted\"; exit' INT\n"
                  "echo started >\"$0.unfinished\"\n"
                  "mv \"$0.unfinished\" \"$0.arguments\"\n"
                  "while [ -e \"$0\" ]; do sleep 0.01; done\n");
    decide();
    EXPECT_EQ(startedWith(), Lines{"started"});
    desktop.answerNextAlert(kAlertSecondButtonReturn);
    EXPECT_THROW(controller->cancelButtonClicked(), ProcessEnded);
    EXPECT_EQ(desktop.journal()->lastAfter("process ended "), "2");
    const std::string mark = deployment.engine().string() + ".interrupted";
    desktop.runMainQueueUntil([&mark] { return std::filesystem::exists(mark); });
}

TEST_F(InstallerFlowTest, TheDecisionGoesOnWhileTheCancelQuestionStands) {
    prepare();
    cutNetwork();
    installEngine(engineReporting("14.0"));
    controller->viewDidAppear();
    desktop.answerNextAlert([this](const platform::Alert&) {
        EXPECT_EQ(desktop.runUtilityItem(), std::nullopt);
        expectStarted();
        return kAlertFirstButtonReturn;
    });
    controller->cancelButtonClicked();
    EXPECT_TRUE(desktop.journal()->contains("alert answered 1000"));
}

TEST_F(InstallerFlowTest, TheLogIsSentWhileTheFatalAlertStands) {
    prepare();
    vendor.setFaults(
        R"({"/downloadinstaller": {"page": "Not here"}, "/crashreport": {"stallAfterBytes": 0}})");
    controller->viewDidAppear();
    const BackgroundWork decision = desktop.startUtilityItem();
    desktop.answerNextAlert([&](const platform::Alert&) {
        EXPECT_FALSE(decision.isFinished()) << "the vendor has not answered yet";
        return kAlertFirstButtonReturn;
    });
    EXPECT_EQ(desktop.runMainQueueUntilProcessEnds(), 1);
    vendor.release();
    desktop.runMainQueueUntil([&] { return decision.isFinished(); });
    ASSERT_EQ(vendor.reportedLogs().size(), 1U);
    EXPECT_NE(vendor.reportedLogs().front().find(": Orvane download info is Not here\r\n"),
              std::string::npos);
}

} // namespace
} // namespace orvane::test
