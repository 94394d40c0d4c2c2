#include "platform/ProcessInfo.h"

#include "platform/Process.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

TEST(ProcessInfoTest, TheNameIsTheExecutablesWithoutItsFolder) {
    EXPECT_EQ(platform::processName(), "orvane_platform_tests");
}

/// Runs a copy of this very test, which removes its own file before it says its name.
TEST(ProcessInfoTest, TheNameStaysWhenTheFileIsRemoved) {
    constexpr char kIsCopy[] = "ORVANE_TEST_IS_COPY";
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe");
    if (std::getenv(kIsCopy) != nullptr) {
        std::filesystem::remove(executable);
        std::printf("<%s>\n", platform::processName().c_str());
        return;
    }
    const TemporaryFolder folder;
    const std::filesystem::path copy = folder.path() / "copied program";
    std::filesystem::copy_file(executable, copy);
    const EnvironmentVariable variable(kIsCopy, "yes");
    platform::Process process;
    process.setLaunchPath(copy);
    process.setArguments({"--gtest_filter=ProcessInfoTest.TheNameStaysWhenTheFileIsRemoved"});
    process.pipeStandardOutput();
    process.launch();
    const Bytes output = process.readStandardOutputToEnd();
    EXPECT_NE(textOf(output).find("<copied program>\n"), std::string_view::npos) << textOf(output);
    EXPECT_FALSE(std::filesystem::exists(copy));
}

} // namespace

} // namespace orvane::test
