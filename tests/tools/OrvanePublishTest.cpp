#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ToolRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

Ending runPublish(const std::vector<std::string>& arguments) { return runTool(ORVANE_PUBLISH, arguments); }

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

TEST(OrvanePublish, PrintsOneJsonObjectForPrograms) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", "abc");
    auto arguments = argumentsFor(folder.path() / "in", folder.path());
    arguments.emplace_back("--json");
    const Ending ending = runPublish(arguments);
    EXPECT_EQ(ending.status, 0);
    const auto report = nlohmann::json::parse(ending.output);
    EXPECT_EQ(report.at("dryRun"), false);
    EXPECT_EQ(report.at("engineFile"), (folder.path() / "engine").string());
    EXPECT_EQ(report.at("description"),
              nlohmann::json::parse(test::contentsOf(folder.path() / "downloadinstaller.json")));
}

TEST(OrvanePublish, OnlySaysWhatADryRunWouldWrite) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", "abc");
    auto arguments = argumentsFor(folder.path() / "in", folder.path() / "new");
    arguments.emplace_back("--dry-run");
    const Ending ending = runPublish(arguments);
    EXPECT_EQ(ending.status, 0);
    EXPECT_NE(ending.output.find("\nwould write " + (folder.path() / "new" / "engine").string() + "\n"),
              std::string::npos)
        << ending.output;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "new"));
}

TEST(OrvanePublish, FailsWhenNobodyCanReadWhatItPrints) {
    EXPECT_EQ(runTool("/bin/sh", {"-c", std::string(ORVANE_PUBLISH) + " --help >/dev/full"}).status, 73);
}

TEST(OrvanePublish, VerifyTellsThatNothingCanBeFetched) {
    const Ending ending = runPublish({"verify", "https://127.0.0.1:1/description", "--json"});
    EXPECT_EQ(ending.status, 69);
    EXPECT_EQ(nlohmann::json::parse(ending.output).at("fetched"), false);
    EXPECT_EQ(runPublish({"verify", "description"}).status, 64);
}

TEST(OrvanePublish, PrintsItsHelp) {
    const Ending ending = runPublish({"x", "--help"});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output.substr(0, 22), "Usage: orvane-publish ");
    EXPECT_EQ(runPublish({"verify", "-h"}).output.substr(0, 29), "Usage: orvane-publish verify ");
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
