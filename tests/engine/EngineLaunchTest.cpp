#include "log/Logger.h"
#include "platform/Process.h"
#include "platform/ProcessInfo.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/NamedPipe.h"
#include "tests/support/RunTest.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

class EngineLaunchTest : public RunTest {
protected:
    EngineLaunchTest() { controller->machPortName = "kestrix.orvane.bootstrap.a1B2c3D4e5"; }

    void installEngine(const std::string& program = engineReporting("14.0")) const {
        writeFile(deployment.engine(), program);
    }

    /// The thirteen arguments that every engine is given, then `options`.
    Lines argumentsWith(const Lines& options) const {
        Lines arguments{"--pid",
                        std::to_string(platform::processIdentifier()),
                        "--owner",
                        "kestrix.orvane.bootstrap.a1B2c3D4e5",
                        "--ownerName",
                        platform::processName(),
                        "--incomplete",
                        "--locale",
                        "fr-ch",
                        "--step",
                        "0",
                        "--datetime",
                        controller->logger.load()->GetCurrentTimeString()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    Lines argumentsOfStartedEngine() { return argumentsOf(deployment.engine(), desktop); }
};

TEST_F(EngineLaunchTest, TheEngineIsToldOfItsOwnerAndOfTheRun) {
    installEngine();
    controller->spawnOrvane();
    EXPECT_EQ(argumentsOfStartedEngine(), argumentsWith({}));
}

TEST_F(EngineLaunchTest, TheOwnersNameIsThatOfThisProgramsFile) {
    EXPECT_EQ(platform::processName(), "orvane_unit_tests");
}

TEST_F(EngineLaunchTest, LanguageAndStepAreThoseOfTheRun) {
    installEngine();
    controller->localeName.store("de-ch");
    controller->lastOrvaneStep = 7;
    controller->spawnOrvane();
    Lines expected = argumentsWith({});
    expected[8] = "de-ch";
    expected[10] = "7";
    EXPECT_EQ(argumentsOfStartedEngine(), expected);
}

TEST_F(EngineLaunchTest, OptionsArePassedOnInTheirOrderButForFork) {
    installEngine();
    controller->orvaneArguments.store({"--fork", "--uninstall", "--fork", "two words", "--forked", "-x"});
    controller->spawnOrvane();
    EXPECT_EQ(argumentsOfStartedEngine(), argumentsWith({"--uninstall", "two words", "--forked", "-x"}));
}

TEST_F(EngineLaunchTest, ForkAloneIsHeldBackHoweverOften) {
    installEngine();
    controller->orvaneArguments.store({"--uninstall", "--fork", "--fork"});
    controller->spawnOrvane();
    EXPECT_EQ(argumentsOfStartedEngine(), argumentsWith({"--uninstall"}));
}

TEST_F(EngineLaunchTest, TheArgumentsAreLoggedWithoutTheEnginesPath) {
    installEngine();
    controller->orvaneArguments.store({"--uninstall", "--fork"});
    controller->spawnOrvane();
    std::string line = "Spawning orvane with args";
    for (const std::string& argument : argumentsWith({"--uninstall"})) {
        line += " " + argument;
    }
    EXPECT_EQ(logLines(), Lines{line});
    // It writes into the test's folder, which goes with the test.
    EXPECT_EQ(controller->orvaneProcessHandle.load()->waitUntilExit(), 0);
}

TEST_F(EngineLaunchTest, AnEngineWithoutItsPermissionGets0744AndIsStarted) {
    installEngine();
    ASSERT_EQ(chmod(deployment.engine().c_str(), 0640), 0);
    controller->spawnOrvane();
    EXPECT_EQ(argumentsOfStartedEngine(), argumentsWith({}));
    struct stat status {};
    ASSERT_EQ(stat(deployment.engine().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0744U);
}

TEST_F(EngineLaunchTest, NobodyWaitsForTheEngine) {
    const NamedPipe pipe(deployment.folder() / "pipe");
    installEngine("#!/bin/sh\nread line <" + pipe.path() + "\necho \"$line\" >\"$0.unfinished\"\n" +
                  "mv \"$0.unfinished\" \"$0.arguments\"\n");
    controller->spawnOrvane();
    pipe.send("the launch has returned\n");
    EXPECT_EQ(argumentsOfStartedEngine(), Lines{"the launch has returned"});
}

TEST_F(EngineLaunchTest, AnEngineThatEndsWithoutAWordChangesNothing) {
    installEngine("#!/bin/sh\nexit 9\n");
    controller->spawnOrvane();
    EXPECT_EQ(controller->orvaneProcessHandle.load()->waitUntilExit(), 9);
    desktop.drainMainQueue();
    EXPECT_EQ(journal(), Lines{});
    EXPECT_EQ(logLines().size(), 1U);
}

TEST_F(EngineLaunchTest, ASecondLaunchReplacesTheHandleAndLeavesTheFirstEngineAlone) {
    const NamedPipe firstPipe(deployment.folder() / "pipe0");
    const NamedPipe secondPipe(deployment.folder() / "pipe1");
    // Each engine waits at the pipe of its step.
    installEngine("#!/bin/sh\nread status <" + (deployment.folder() / "pipe").string() +
                  "\"${11}\"\nexit \"$status\"\n");
    controller->spawnOrvane();
    const auto first = controller->orvaneProcessHandle.load();
    controller->lastOrvaneStep = 1;
    controller->spawnOrvane();
    const auto second = controller->orvaneProcessHandle.load();
    EXPECT_NE(second, first);
    secondPipe.send("6\n");
    EXPECT_EQ(second->waitUntilExit(), 6);
    firstPipe.send("5\n");
    EXPECT_EQ(first->waitUntilExit(), 5) << "nobody else told it to end";
}

TEST_F(EngineLaunchTest, TheEngineInheritsEnvironmentFolderAndStandardOutput) {
    const EnvironmentVariable variable("ORVANE_TEST_VARIABLE", "inherited");
    installEngine("#!/bin/sh\necho \"$ORVANE_TEST_VARIABLE $(pwd -P)\"\n");
    CaptureStandardOutput output;
    controller->spawnOrvane();
    EXPECT_EQ(controller->orvaneProcessHandle.load()->waitUntilExit(), 0);
    const std::string line = "inherited " + std::filesystem::current_path().string() + "\n";
    EXPECT_NE(output.finish().find(line), std::string::npos);
}

TEST_F(EngineLaunchTest, AMissingEngineEndsTheInstallation) {
    controller->spawnOrvane();
    EXPECT_TRUE(logLines().front().starts_with("Spawning orvane with args --pid "));
    EXPECT_EQ(logLines().back(), "Cannot spawn orvane: " + deployment.engine().string() +
                                     ": No such file or directory (ENOENT)");
    EXPECT_EQ(logLines().size(), 2U);
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
    expectFatalError(kInstallationFailed);
}

TEST_F(EngineLaunchTest, AMissingEngineEndsTheUninstallation) {
    controller->uninstall = true;
    controller->spawnOrvane();
    expectFatalError(kUninstallationFailed);
}

TEST_F(EngineLaunchTest, AFileThatIsNoProgramEndsTheInstallation) {
    installEngine("<html>no program</html>");
    controller->spawnOrvane();
    EXPECT_EQ(logLines().back(),
              "Cannot spawn orvane: " + deployment.engine().string() + ": Exec format error (ENOEXEC)");
    expectFatalError(kInstallationFailed);
}

TEST_F(EngineLaunchTest, AnEngineThatCouldNotBeStartedIsNotInterruptedLater) {
    installEngine("no program");
    controller->spawnOrvane();
    ASSERT_NE(controller->orvaneProcessHandle.load(), nullptr);
    controller->orvaneProcessHandle.load()->interrupt();
    expectFatalError(kInstallationFailed);
}

TEST_F(EngineLaunchTest, WithoutALogItIsAProgrammingError) {
    withoutLog();
    EXPECT_DEATH(controller->spawnOrvane(), "the engine is started before the log was opened");
}

TEST_F(EngineLaunchTest, AMissingLocationIsAProgrammingError) {
    controller->orvaneExeUrl.store(std::nullopt);
    EXPECT_DEATH(controller->spawnOrvane(), "the engine's location is needed before it was built");
}

// From the program's own command line.

class EngineOptionsTest : public ControllerTest {
protected:
    /// What follows the thirteen fixed arguments when the program was started with `options`.
    Lines passedOnFrom(const Lines& options) {
        writeFile(deployment.engine(), engineReporting("14.0"));
        prepare(options);
        controller->orvaneExeUrl.store(deployment.engine());
        controller->spawnOrvane();
        const Lines arguments = argumentsOf(deployment.engine(), desktop);
        EXPECT_GE(arguments.size(), 13U);
        return {arguments.begin() + 13, arguments.end()};
    }
};

TEST_F(EngineOptionsTest, UninstallAndForkTwiceBecomeUninstall) {
    desktop.answerNextAlert(platform::kAlertSecondButtonReturn);
    EXPECT_EQ(passedOnFrom({"--uninstall", "--fork", "--fork"}), Lines{"--uninstall"});
}

TEST_F(EngineOptionsTest, NoOptionsBecomeTheProgramsOwnPath) {
    EXPECT_EQ(passedOnFrom({}), Lines{"/somewhere/OrvaneBootstrap"});
}

TEST_F(EngineOptionsTest, ForkAloneBecomesNothing) { EXPECT_EQ(passedOnFrom({"--fork"}), Lines{}); }

} // namespace
} // namespace orvane::test
