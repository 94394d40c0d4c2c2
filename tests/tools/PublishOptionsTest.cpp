#include "tools/PublishOptions.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

#include <map>

namespace orvane::tools {
namespace {

using Options = std::map<std::string, std::string>;

Options usual() {
    return {{"--version", "14.2.7"},
            {"--url", "https://downloads.example/setup/Varlen-setup"},
            {"--digest", "sha256"},
            {"--cipher", "xor"},
            {"--output", "out"}};
}

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

TEST(PublishOptions, AreRead) {
    const PublishOptions options = parsePublishOptions(argumentsOf(usual()));
    EXPECT_EQ(options.input, "engine");
    EXPECT_EQ(options.version, "14.2.7");
    EXPECT_EQ(options.url, "https://downloads.example/setup/Varlen-setup");
    EXPECT_EQ(options.name, "Varlen-setup");
    EXPECT_EQ(options.digest, "sha256");
    EXPECT_EQ(options.cipher, Cipher::exclusiveOr);
    EXPECT_EQ(options.output, "out");
    EXPECT_TRUE(options.plainEngine.empty());
    EXPECT_FALSE(options.dryRun);
    EXPECT_FALSE(options.json);
}

TEST(PublishOptions, TakeTheFlagsAnywhere) {
    auto arguments = argumentsOf(usual());
    arguments.insert(arguments.begin(), "--json");
    arguments.emplace_back("--dry-run");
    const PublishOptions options = parsePublishOptions(arguments);
    EXPECT_TRUE(options.dryRun);
    EXPECT_TRUE(options.json);
}

TEST(PublishOptions, TakePathsWithBlanks) {
    Options options = usual();
    options["--output"] = "a \"folder\" of ours";
    EXPECT_EQ(parsePublishOptions(argumentsOf(options)).output, "a \"folder\" of ours");
}

TEST(PublishOptions, ThatAreMissingAreNamed) {
    for (const auto& [name, value] : usual()) {
        Options options = usual();
        options.erase(name);
        EXPECT_EQ(failureOf(argumentsOf(options)), name + " is required");
    }
    auto arguments = argumentsOf(usual());
    arguments.erase(arguments.begin());
    EXPECT_EQ(failureOf(arguments), "FILE is required");
}

TEST(PublishOptions, KnowTwoDigestsAndThreeCiphers) {
    EXPECT_EQ(failureWith("--digest", "md5"), "no failure");
    EXPECT_EQ(failureWith("--digest", "SHA256"), "--digest: SHA256 not in {md5,sha256}");
    EXPECT_EQ(failureWith("--cipher", "none"), "no failure");
    EXPECT_EQ(failureWith("--cipher", "XOR"), "--cipher: XOR not in {none,pkg,xor}");
}

TEST(PublishOptions, TakeTheEngineOfAPackageAndOfNothingElse) {
    Options options = usual();
    options["--cipher"] = "pkg";
    EXPECT_EQ(failureOf(argumentsOf(options)), "--plain-engine is required with --cipher pkg");
    options["--plain-engine"] = "plain";
    EXPECT_EQ(parsePublishOptions(argumentsOf(options)).plainEngine, "plain");
    for (const char* cipher : {"none", "xor"}) {
        options["--cipher"] = cipher;
        EXPECT_EQ(failureOf(argumentsOf(options)),
                  "--plain-engine is only for --cipher pkg: otherwise FILE itself is the engine");
    }
}

TEST(PublishOptions, TakeVersionsOfNumbersAndPoints) {
    for (const char* version : {"14", "14.2", "14.02.7.0"}) {
        EXPECT_EQ(failureWith("--version", version), "no failure") << version;
    }
    for (const char* version : {".", "14.", ".2", "14..2", "14.2b", "v14", "14 2", "-1"}) {
        EXPECT_NE(failureWith("--version", version), "no failure") << version;
    }
}

TEST(PublishOptions, TakeAddressesThatNameAFile) {
    for (const char* url :
         {"http://h.example/a", "engine", "https://h.example/a b", "https://h.example/a?b",
          "https://h.example/a#b", "https://h.example/a/", "https://h.example", "https:///a",
          "https://h.example/..", "https://h.example/%41", "https://h.example/downloadinstaller.json"}) {
        EXPECT_NE(failureWith("--url", url), "no failure") << url;
    }
}

} // namespace
} // namespace orvane::tools
