#include "verify/Shell.h"

#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orvane {
namespace {

using test::CaptureStandardOutput;
using test::contentsOf;
using test::EnvironmentVariable;
using test::TemporaryFolder;
using test::writeFile;

TEST(ShellTest, ACommandThatSucceedsAnswersZero) { EXPECT_EQ(Shell({"true"}), 0); }

TEST(ShellTest, ACommandsOwnStatusIsReturned) {
    EXPECT_EQ(Shell({"false"}), 1);
    EXPECT_EQ(Shell({"sh", "-c", "exit 3"}), 3);
    EXPECT_EQ(Shell({"sh", "-c", "exit 255"}), 255);
}

TEST(ShellTest, ACommandThatDoesNotExistAnswers127) {
    // For a search path with a folder that cannot be entered env answers 126.
    const TemporaryFolder folder;
    const EnvironmentVariable path("PATH", folder.path().string());
    EXPECT_EQ(Shell({"orvane-no-such-command"}), 127);
}

TEST(ShellTest, TheCommandIsLookedUpOnTheSearchPath) {
    const TemporaryFolder folder;
    const auto command = folder.path() / "orvane-test-command";
    writeFile(command, "#!/bin/sh\nexit 42\n");
    ASSERT_EQ(chmod(command.c_str(), 0755), 0);
    const EnvironmentVariable path("PATH", folder.path().string());
    EXPECT_EQ(Shell({"orvane-test-command"}), 42);
}

TEST(ShellTest, ArgumentsArriveInOrderAndAsTheyStand) {
    CaptureStandardOutput output;
    EXPECT_EQ(Shell({"printf", "<%s>", "one two", "", "$HOME", "*", "'"}), 0);
    EXPECT_EQ(output.finish(), "<one two><><$HOME><*><'>");
}

TEST(ShellTest, TheCommandHasEndedWhenShellReturns) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "written";
    EXPECT_EQ(Shell({"sh", "-c", "cat /dev/null; echo done >\"$0\"", file.string()}), 0);
    EXPECT_EQ(contentsOf(file), "done\n");
}

} // namespace
} // namespace orvane
