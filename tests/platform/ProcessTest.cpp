#include "tests/platform/ErrorExpectation.h"
#include "tests/platform/ProcessFixture.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/Gate.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvane::test {

namespace {

using platform::Process;

/// Waits, with a deadline, for something that no condition variable tells.
template <typename Condition>
bool eventually(Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

/// Whether the child, ended or not, is no longer ours to wait for.
bool isReaped(pid_t child) {
    siginfo_t end{};
    return ::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOHANG | WNOWAIT) != 0 &&
           errno == ECHILD;
}

TEST_F(ProcessTest, ArgumentsReachTheChildExactly) {
    Process process;
    process.setLaunchPath("/usr/bin/printf");
    process.setArguments({"<%s>", "--pid", "", "two words", "caf\xc3\xa9", "$HOME \"quoted\"\n"});
    EXPECT_EQ(outputOf(process), "<--pid><><two words><caf\xc3\xa9><$HOME \"quoted\"\n>");
}

TEST_F(ProcessTest, ArgumentsCanBeReadBack) {
    Process process;
    EXPECT_TRUE(process.arguments().empty());
    process.setArguments({"--version", "two"});
    EXPECT_EQ(process.arguments(), (std::vector<std::string>{"--version", "two"}));
}

TEST_F(ProcessTest, TheLaunchPathIsTheChildsOwnName) {
    Process process;
    process.setLaunchPath("/bin/sh");
    process.setArguments({"-c", "echo $0"});
    EXPECT_EQ(outputOf(process), "/bin/sh\n");
}

TEST_F(ProcessTest, TheResultIsTheExitStatus) {
    EXPECT_EQ(resultOf(*shell("exit 0")), 0);
    EXPECT_EQ(resultOf(*shell("exit 7")), 7);
    EXPECT_EQ(resultOf(*shell("exit 255")), 255);
}

TEST_F(ProcessTest, TheResultOfAKilledChildIsTheSignal) {
    EXPECT_EQ(resultOf(*shell("kill -KILL $$")), SIGKILL);
    EXPECT_EQ(resultOf(*shell("kill -TERM $$")), SIGTERM);
}

TEST_F(ProcessTest, TheEndCanBeAskedForAgain) {
    const auto process = shell("exit 3");
    process->launch();
    EXPECT_EQ(process->waitUntilExit(), 3);
    EXPECT_EQ(process->waitUntilExit(), 3);
}

TEST_F(ProcessTest, OutputIsReadToItsEndHoweverLong) {
    const std::string output = outputOf(*shell("head -c 3000000 /dev/zero | tr '\\0' x"));
    EXPECT_EQ(output.size(), 3'000'000U);
    EXPECT_EQ(output.find_first_not_of('x'), std::string::npos);
}

TEST_F(ProcessTest, OutputEndsWhenItsLastWriterHasClosedIt) {
    // The shell itself ends at once; what it left behind writes on.
    ASSERT_EQ(::mkfifo(at("go").c_str(), 0600), 0);
    const auto process = shell("(read line < \"$1\"; echo $line) & echo first", {at("go")});
    process->pipeStandardOutput();
    process->launch();
    EXPECT_EQ(process->waitUntilExit(), 0);
    writeFile(at("go"), "second\n");
    EXPECT_EQ(textOf(process->readStandardOutputToEnd()), "first\nsecond\n");
}

TEST_F(ProcessTest, OutputIsReadToItsEndAndOnlyItsBeginningKept) {
    const auto process =
        shell("printf beginning; head -c 1000000 /dev/zero && echo done > \"$1\"", {at("end")});
    process->pipeStandardOutput();
    process->launch();
    EXPECT_EQ(textOf(process->readStandardOutputToEnd(9)), "beginning");
    EXPECT_EQ(process->waitUntilExit(), 0);
    EXPECT_EQ(contentsOf(at("end")), "done\n");
}

TEST_F(ProcessTest, AChildThatSaysNothingGivesNothing) { EXPECT_EQ(outputOf(*shell("exit 1")), ""); }

TEST_F(ProcessTest, EnvironmentAndWorkingFolderAreInherited) {
    const EnvironmentVariable variable("ORVANE_TEST_VALUE", "handed down");
    const std::string folder = std::filesystem::current_path();
    EXPECT_EQ(outputOf(*shell("echo $ORVANE_TEST_VALUE; pwd -P")), "handed down\n" + folder + "\n");
}

TEST_F(ProcessTest, WhatCannotBeLaunchedIsAnError) {
    writeFile(at("plain"), "#!/bin/sh\n");
    writeFile(at("no program"), "just text");
    std::filesystem::permissions(at("no program"), std::filesystem::perms::owner_all);
    for (const std::string name : {"missing", "plain", "no program", ""}) {
        Process process;
        process.setLaunchPath(at(name));
        EXPECT_THROW(process.launch(), platform::Error) << name;
    }
}

TEST_F(ProcessTest, AfterAFailedLaunchThereIsNothingToInterrupt) {
    Process process;
    process.setLaunchPath(at("missing"));
    process.pipeStandardOutput();
    EXPECT_THROW(process.launch(), platform::Error);
    process.interrupt();
}

TEST_F(ProcessTest, WithoutALaunchPathThereIsNoLaunch) {
    Process process;
    expectError(ENOENT, "No launch path", [&process] { process.launch(); });
}

TEST_F(ProcessTest, InterruptReachesTheChild) {
    const auto process = shell(
        R"(exec 2> /dev/null; trap 'echo interrupted; exit 5' INT; echo ready > "$1"; read line < "$2")",
        {at("ready"), at("never")});
    ASSERT_EQ(::mkfifo(at("ready").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(at("never").c_str(), 0600), 0);
    process->pipeStandardOutput();
    process->launch();
    EXPECT_EQ(contentsOf(at("ready")), "ready\n");
    process->interrupt();
    EXPECT_EQ(textOf(process->readStandardOutputToEnd()), "interrupted\n");
    EXPECT_EQ(process->waitUntilExit(), 5);
}

TEST_F(ProcessTest, InterruptEndsAChildThatDoesNotCare) {
    Process process;
    process.setLaunchPath("/bin/sleep");
    process.setArguments({"600"});
    process.launch();
    process.interrupt();
    EXPECT_EQ(process.waitUntilExit(), SIGINT);
}

TEST_F(ProcessTest, InterruptBeforeTheLaunchDoesNothing) {
    const auto process = shell("exit 4");
    process->interrupt();
    EXPECT_EQ(resultOf(*process), 4);
}

TEST_F(ProcessTest, InterruptAfterTheEndDoesNothing) {
    const auto process = shell("exit 4");
    EXPECT_EQ(resultOf(*process), 4);
    process->interrupt();
    EXPECT_EQ(process->waitUntilExit(), 4);
}

TEST_F(ProcessTest, InterruptMayComeFromAnotherThreadWhileTheChildIsLaunched) {
    for (int round = 0; round < 30; ++round) {
        Process process;
        process.setLaunchPath("/bin/sleep");
        process.setArguments({"600"});
        std::atomic<bool> stop = false;
        std::thread interrupter([&] {
            while (!stop) {
                process.interrupt();
            }
        });
        process.launch();
        EXPECT_EQ(process.waitUntilExit(), SIGINT);
        stop = true;
        interrupter.join();
    }
}

TEST_F(ProcessTest, TheChildIgnoresAndBlocksNoSignal) {
    // What a system's background threads block, and what a shell ignores for a program in the background.
    sigset_t signals;
    sigset_t before;
    sigemptyset(&signals);
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR2}) {
        sigaddset(&signals, number);
    }
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &signals, &before), 0);
    EXPECT_EQ(resultOf(*shell("kill -USR2 $$; exit 1")), SIGUSR2);
    EXPECT_EQ(resultOf(*shell("kill -TERM $$; exit 1")), SIGTERM);
    for (const int number : {SIGHUP, SIGINT, SIGQUIT}) {
        const auto handler = std::signal(number, SIG_IGN);
        EXPECT_EQ(resultOf(*shell("kill -$1 $$; exit 1", {std::to_string(number)})), number);
        std::signal(number, handler);
    }
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
}

TEST_F(ProcessTest, TheChildGetsNoDescriptorButTheStandardStreams) {
    const int low = ::open("/dev/null", O_RDONLY); // not close-on-exec
    const int high = ::fcntl(low, F_DUPFD, 500);
    const std::string output =
        outputOf(*shell("for number in 0 1 2 $1 $2; do test -e /dev/fd/$number && echo $number; done; true",
                        {std::to_string(low), std::to_string(high)}));
    ::close(high);
    ::close(low);
    EXPECT_EQ(output, "0\n1\n2\n");
}

TEST_F(ProcessTest, AnEndedChildIsReapedThoughNobodyWaits) {
    const auto process = shell("echo $$");
    const pid_t child = std::stoi(outputOf(*process));
    EXPECT_TRUE(eventually([child] { return isReaped(child); }));
    process->interrupt();
}

TEST_F(ProcessTest, AChildOutlivesItsProcessAndIsStillReaped) {
    ASSERT_EQ(::mkfifo(at("go").c_str(), 0600), 0);
    auto process =
        shell(R"(echo $$ > "$2"; read line < "$1"; echo $line > "$3")", {at("go"), at("pid"), at("done")});
    ASSERT_EQ(::mkfifo(at("pid").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(at("done").c_str(), 0600), 0);
    process->launch();
    const pid_t child = std::stoi(contentsOf(at("pid")));
    process.reset();
    EXPECT_FALSE(isReaped(child));
    writeFile(at("go"), "finished\n");
    EXPECT_EQ(contentsOf(at("done")), "finished\n");
    EXPECT_TRUE(eventually([child] { return isReaped(child); }));
}

TEST_F(ProcessTest, ManyChildrenAtOnceKeepTheirResultsApart) {
    std::vector<std::unique_ptr<Process>> processes;
    for (int number = 0; number < 40; ++number) {
        processes.push_back(shell("exit $1", {std::to_string(number)}));
        processes.back()->launch();
    }
    for (int number = 0; number < 40; ++number) {
        EXPECT_EQ(processes[static_cast<std::size_t>(number)]->waitUntilExit(), number);
    }
}

} // namespace

} // namespace orvane::test
