#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ToolRun.h"
#include "verify/Crypto.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

const std::string kEngine = "#!/bin/sh\n[ \"$1\" = --version ] && echo 14.2.7\n";

Ending runPublish(const std::vector<std::string>& arguments) { return runTool(ORVANE_PUBLISH, arguments); }

std::vector<std::string> argumentsFor(const std::filesystem::path& engine,
                                      const std::filesystem::path& output) {
    return {engine.string(), "--base-url", "https://h.example", "--name",       "engine", "--digest", "md5",
            "--cipher",      "none",       "--folder",          output.string()};
}

TEST(OrvanePublishTest, PrintsBothDigestsAndWhatItWrote) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", kEngine);
    const Ending ending = runPublish(argumentsFor(folder.path() / "in", folder.path()));
    EXPECT_EQ(ending.status, 0);
    const std::string digest = md5File(folder.path() / "in");
    EXPECT_EQ(ending.output, "version 14.2.7 at https://h.example/14.2.7/engine\nengine digest (md5)       " +
                                 digest + "\ntransferred digest (md5)  " + digest + "\nwrote " +
                                 (folder.path() / "14.2.7" / "engine").string() + "\nwrote " +
                                 (folder.path() / "14.2.7" / "downloadinstaller.json").string() + "\n");
}

TEST(OrvanePublishTest, PrintsOneJsonObjectForPrograms) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", kEngine);
    auto arguments = argumentsFor(folder.path() / "in", folder.path());
    arguments.emplace_back("--json");
    const Ending ending = runPublish(arguments);
    EXPECT_EQ(ending.status, 0);
    const auto report = nlohmann::json::parse(ending.output);
    EXPECT_EQ(report.at("dryRun"), false);
    EXPECT_EQ(report.at("engineFile"), (folder.path() / "14.2.7" / "engine").string());
    EXPECT_EQ(report.at("description"),
              nlohmann::json::parse(test::contentsOf(folder.path() / "14.2.7" / "downloadinstaller.json")));
}

TEST(OrvanePublishTest, OnlySaysWhatADryRunWouldWrite) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", kEngine);
    auto arguments = argumentsFor(folder.path() / "in", folder.path() / "new");
    arguments.emplace_back("--dry-run");
    const Ending ending = runPublish(arguments);
    EXPECT_EQ(ending.status, 0);
    EXPECT_NE(
        ending.output.find("\nwould write " + (folder.path() / "new" / "14.2.7" / "engine").string() + "\n"),
        std::string::npos)
        << ending.output;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "new"));
}

TEST(OrvanePublishTest, FailsWhenNobodyCanReadWhatItPrints) {
    EXPECT_EQ(runTool("/bin/sh", {"-c", std::string(ORVANE_PUBLISH) + " --help >/dev/full"}).status, 73);
}

TEST(OrvanePublishTest, VerifyTellsThatNothingCanBeFetched) {
    const Ending ending = runPublish({"verify", "https://127.0.0.1:1/description", "--json"});
    EXPECT_EQ(ending.status, 69);
    EXPECT_EQ(nlohmann::json::parse(ending.output).at("fetched"), false);
    EXPECT_EQ(runPublish({"verify", "description"}).status, 64);
}

TEST(OrvanePublishTest, ListsAndPrunesWhatIsPublished) {
    const test::TemporaryFolder folder;
    const std::string published = (folder.path() / "published").string();
    for (const char* version : {"14.2.7", "14.10", "14.9"}) {
        test::writeFile(folder.path() / "in",
                        "#!/bin/sh\n[ \"$1\" = --version ] && echo " + std::string(version) + "\n");
        ASSERT_EQ(runPublish(argumentsFor(folder.path() / "in", published)).status, 0);
    }
    test::writeFile(folder.path() / "published" / "downloadinstaller.json",
                    test::contentsOf(folder.path() / "published" / "14.2.7" / "downloadinstaller.json"));
    const Ending list = runPublish({"list", "--folder", published, "--json"});
    const auto versions = nlohmann::json::parse(list.output).at("versions");
    ASSERT_EQ(versions.size(), 3U);
    EXPECT_EQ(versions[0].at("version"), "14.10");
    EXPECT_EQ(versions[1].at("version"), "14.9");
    EXPECT_EQ(versions[2].at("current"), true);
    EXPECT_EQ(runPublish({"prune", "--folder", published, "--keep", "1", "--dry-run"}).output,
              "would remove 14.9\n");
    EXPECT_EQ(runPublish({"prune", "--folder", published, "--keep", "1"}).output, "removed 14.9\n");
    const std::string text = runPublish({"list", "--folder", published}).output;
    EXPECT_TRUE(text.starts_with("14.10  ")) << text;
    EXPECT_TRUE(text.ends_with("  current\n")) << text;
}

TEST(OrvanePublishTest, SwitchesNothingThatUsersWouldNotGet) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", kEngine);
    auto arguments = argumentsFor(folder.path() / "in", folder.path() / "published");
    arguments[2] = "https://127.0.0.1:1";
    ASSERT_EQ(runPublish(arguments).status, 0);
    const std::string published = (folder.path() / "published").string();
    EXPECT_EQ(runPublish({"switch", "14.2.7", "--folder", published}).status, 69);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "published" / "downloadinstaller.json"));
    EXPECT_EQ(runPublish({"switch", "14.3", "--folder", published}).status, 66);
    EXPECT_EQ(runPublish({"switch", "--folder", published}).status, 64);
    EXPECT_EQ(runPublish({"switch", "14.2.7", "--end-staging", "--folder", published}).status, 64);
}

TEST(OrvanePublishTest, PrintsItsHelp) {
    const Ending ending = runPublish({"x", "--help"});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output.substr(0, 22), "Usage: orvane-publish ");
    EXPECT_EQ(runPublish({"verify", "-h"}).output.substr(0, 29), "Usage: orvane-publish verify ");
}

TEST(OrvanePublishTest, TellsFailuresApartByItsStatus) {
    const test::TemporaryFolder folder;
    test::writeFile(folder.path() / "in", kEngine);
    test::writeFile(folder.path() / "empty", "");
    EXPECT_EQ(runPublish({}).status, 64);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "empty", folder.path())).status, 65);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "none", folder.path())).status, 66);
    EXPECT_EQ(runPublish(argumentsFor(folder.path() / "in", folder.path() / "in" / "x")).status, 73);
}

} // namespace
} // namespace orvane::tools
