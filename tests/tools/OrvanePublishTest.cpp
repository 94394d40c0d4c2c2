#include "platform/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

struct Ending {
    int status;
    std::string output;
};

Ending runPublish(const std::vector<std::string>& arguments) {
    platform::Process program;
    program.setLaunchPath(ORVANE_PUBLISH);
    program.setArguments(arguments);
    program.pipeStandardOutput();
    program.launch();
    std::string output(textOf(program.readStandardOutputToEnd()));
    return {program.waitUntilExit(), std::move(output)};
}

std::vector<std::string> argumentsFor(const std::filesystem::path& engine,
                                      const std::filesystem::path& output) {
    return {engine.string(), "--version", "1",        "--url", "https://h.example/engine",
            "--digest",      "md5",       "--cipher", "none",  "--output",
            output.string()};
}

TEST(OrvanePublish, PrintsBothDigestsAndWhatItWrote) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", "abc");
    const Ending ending = runPublish(argumentsFor(folder.path() / "in", folder.path()));
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output, "engine digest (md5)       900150983cd24fb0d6963f7d28e17f72\n"
                             "transferred digest (md5)  900150983cd24fb0d6963f7d28e17f72\n"
                             "wrote " +
                                 (folder.path() / "engine").string() + "\nwrote " +
                                 (folder.path() / "downloadinstaller.json").string() + "\n");
}

TEST(OrvanePublish, PrintsItsHelp) {
    const Ending ending = runPublish({"x", "--help"});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output.substr(0, 22), "Usage: orvane-publish ");
}

TEST(OrvanePublish, TellsFailuresApartByItsStatus) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", "abc");
    test::writeFile(folder.path() / "empty", "");
    EXPECT_EQ(runPublish({}).status, 64);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "empty", folder.path())).status, 65);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "none", folder.path())).status, 66);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "in", folder.path() / "in" / "x")).status, 73);
}

} // namespace
} // namespace orvane::tools
