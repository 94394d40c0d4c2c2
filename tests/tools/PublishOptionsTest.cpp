#include "tools/PublishOptions.h"

#include "tools/ProgramFormat.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

#include <map>

namespace orvane::tools {
namespace {

using Options = std::map<std::string, std::string>;

Options usual() { return {{"--base-url", "https://downloads.example/setup"}, {"--folder", "out"}}; }

std::vector<std::string> argumentsOf(const Options& options) {
    std::vector<std::string> arguments{"engine"};
    for (const auto& [name, value] : options) {
        arguments.insert(arguments.end(), {name, value});
    }
    return arguments;
}

std::string failureOf(const std::vector<std::string>& arguments) {
    try {
        parsePublishOptions(arguments);
    } catch (const ToolError& error) {
        EXPECT_EQ(error.status(), ExitStatus::usage);
        return error.what();
    }
    return "no failure";
}

std::string failureWith(const std::string& name, const std::string& value) {
    Options options = usual();
    options[name] = value;
    return failureOf(argumentsOf(options));
}

TEST(PublishOptionsTest, AreRead) {
    PublishOptions options = parsePublishOptions(
        {"engine", "--base-url", "https://downloads.example/setup", "--folder", "out", "--version", "14.2.7",
         "--name", "Varlen-setup", "--digest", "md5", "--cipher", "none", "--system", "macos", "--no-run"});
    EXPECT_EQ(options.input, "engine");
    EXPECT_EQ(options.version, "14.2.7");
    EXPECT_EQ(options.url(), "https://downloads.example/setup/14.2.7/Varlen-setup");
    EXPECT_EQ(options.digest, "md5");
    EXPECT_EQ(options.cipher, Cipher::none);
    EXPECT_EQ(options.folder, "out");
    EXPECT_EQ(options.system, "macos");
    EXPECT_FALSE(options.run);
    EXPECT_TRUE(options.plainEngine.empty());
    EXPECT_FALSE(options.dryRun);
    EXPECT_FALSE(options.json);
}

TEST(PublishOptionsTest, HaveDefaultsForTheUsualPublication) {
    const PublishOptions options = parsePublishOptions(argumentsOf(usual()));
    EXPECT_EQ(options.version, "");
    EXPECT_EQ(options.name, "varlen-setup");
    EXPECT_EQ(options.digest, "sha256");
    EXPECT_EQ(options.cipher, Cipher::exclusiveOr);
    EXPECT_EQ(options.system, thisSystem());
    EXPECT_TRUE(options.run);
}

TEST(PublishOptionsTest, TakeABaseAddressWithOrWithoutASlashAtItsEnd) {
    Options options = usual();
    options["--base-url"] = "https://downloads.example/setup//";
    EXPECT_EQ(parsePublishOptions(argumentsOf(options)).baseUrl, "https://downloads.example/setup");
}

TEST(PublishOptionsTest, DoNotRunAnEngineForAnotherSystem) {
    Options options = usual();
    options["--system"] = "macos";
    EXPECT_EQ(failureOf(argumentsOf(options)),
              "an engine for macos cannot run on " + thisSystem() + "; add --no-run and --version");
    auto arguments = argumentsOf(options);
    arguments.emplace_back("--no-run");
    EXPECT_EQ(failureOf(arguments), "--version is required with --no-run");
    arguments.insert(arguments.end(), {"--version", "14.2.7"});
    EXPECT_EQ(failureOf(arguments), "no failure");
}

TEST(PublishOptionsTest, TakeTheFlagsAnywhere) {
    auto arguments = argumentsOf(usual());
    arguments.insert(arguments.begin(), "--json");
    arguments.emplace_back("--dry-run");
    const PublishOptions options = parsePublishOptions(arguments);
    EXPECT_TRUE(options.dryRun);
    EXPECT_TRUE(options.json);
}

TEST(PublishOptionsTest, TakePathsWithBlanks) {
    Options options = usual();
    options["--folder"] = "a \"folder\" of ours";
    EXPECT_EQ(parsePublishOptions(argumentsOf(options)).folder, "a \"folder\" of ours");
}

TEST(PublishOptionsTest, ThatAreMissingAreNamed) {
    for (const auto& [name, value] : usual()) {
        Options options = usual();
        options.erase(name);
        EXPECT_EQ(failureOf(argumentsOf(options)), name + " is required");
    }
    auto arguments = argumentsOf(usual());
    arguments.erase(arguments.begin());
    EXPECT_EQ(failureOf(arguments), "FILE is required");
}

TEST(PublishOptionsTest, KnowTwoDigestsAndThreeCiphers) {
    EXPECT_EQ(failureWith("--digest", "md5"), "no failure");
    EXPECT_EQ(failureWith("--digest", "SHA256"), "--digest: SHA256 not in {md5,sha256}");
    EXPECT_EQ(failureWith("--cipher", "none"), "no failure");
    EXPECT_EQ(failureWith("--cipher", "XOR"), "--cipher: XOR not in {none,pkg,xor}");
}

TEST(PublishOptionsTest, TakeTheEngineOfAPackageAndOfNothingElse) {
    Options options = usual();
    options["--cipher"] = "pkg";
    EXPECT_EQ(failureOf(argumentsOf(options)), "--plain-engine is required with --cipher pkg");
    options["--plain-engine"] = "plain";
    EXPECT_EQ(failureOf(argumentsOf(options)),
              "--cipher pkg is only for --system macos: other systems have no such installer");
    options["--system"] = "macos";
    options["--version"] = "14";
    auto arguments = argumentsOf(options);
    arguments.emplace_back("--no-run");
    EXPECT_EQ(parsePublishOptions(arguments).plainEngine, "plain");
    for (const char* cipher : {"none", "xor"}) {
        options["--cipher"] = cipher;
        EXPECT_EQ(failureOf(argumentsOf(options)),
                  "--plain-engine is only for --cipher pkg: otherwise FILE itself is the engine");
    }
}

TEST(PublishOptionsTest, TakeDottedVersionsAndKnownSystems) {
    EXPECT_EQ(failureWith("--version", "14.2"), "no failure");
    EXPECT_EQ(failureWith("--version", "v14"),
              "--version: must be a dotted version such as 14.2.7, not \"v14\"");
    EXPECT_NE(failureWith("--system", "darwin"), "no failure");
}

TEST(PublishOptionsTest, TakeHttpsAddressesThatCanBeAppendedTo) {
    for (const char* url : {"http://h.example/a", "folder", "https://h.example/a b", "https://h.example/a?b",
                            "https://h.example/a#b"}) {
        EXPECT_NE(failureWith("--base-url", url), "no failure") << url;
    }
    for (const char* name : {"a/b", ".a", "..", "a%41", "a b", "a?b", "downloadinstaller.json"}) {
        EXPECT_NE(failureWith("--name", name), "no failure") << name;
    }
}

} // namespace
} // namespace orvane::tools
