#include "tools/RunLog.h"

#include "tests/tools/ReportSamples.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

const std::string kLaunch =
    "Spawning orvane with args --pid 7 --owner kestrix.orvane.bootstrap.abcdefghij --ownerName Varlen Setup "
    "--incomplete --locale de-ch --step 12 --datetime 2026-11-21 20-30-00";
const std::string kDescription = R"(Orvane download info is {"Version": "14.2.7",
 "Checksum": "ab", "ChecksumAlgorithm": "md5", "EncryptionAlgorithm": "xor"})";

RunFacts facts(const std::vector<std::string>& lines) {
    const RunLog log(logOf(lines));
    return factsOf(log);
}

TEST(RunLogTest, ATextOfSeveralLinesIsOneLine) {
    const RunLog log(logOf({"one", "two\nhalf\r\nthird", "three"}));
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{"one", "two\nhalf\r\nthird", "three"}));
    EXPECT_EQ(log.withTime(log.lines()[1]), "12:34:56: two\nhalf\r\nthird");
    EXPECT_FALSE(log.isCutOff());
}

TEST(RunLogTest, KnowsALogThatBreaksOffWithinALine) {
    const RunLog log("12:34:56: one\r\n12:34:57: tw");
    EXPECT_EQ(log.lines(), (std::vector<LogLine>{"one", "tw"}));
    EXPECT_TRUE(log.isCutOff());
    EXPECT_TRUE(RunLog("").lines().empty());
    EXPECT_FALSE(RunLog("").isCutOff());
}

TEST(RunLogTest, KeepsTheFirstAndTheLastOfTooManyLines) {
    std::vector<std::string> lines(50'000, "x");
    lines.front() = "first";
    lines.back() = "last";
    const RunLog log(logOf(lines));
    EXPECT_LE(log.lines().size(), 20'000U);
    EXPECT_EQ(log.lines().front(), "first");
    EXPECT_EQ(log.lines().back(), "last");
}

TEST(RunLogTest, KnowsALogByTheTimeAtItsBeginning) {
    EXPECT_TRUE(looksLikeLog("12:34:56: "));
    EXPECT_FALSE(looksLikeLog("12:34:56"));
    EXPECT_FALSE(looksLikeLog("1x:34:56: x"));
    EXPECT_FALSE(looksLikeLog(""));
}

TEST(RunLogTest, TellsTheModeWhereTheLogHoldsIt) {
    EXPECT_EQ(facts({kLaunch}).mode, "install");
    EXPECT_EQ(facts({kLaunch + " --uninstall --verbose"}).mode, "uninstall");
    EXPECT_EQ(facts({kLaunch + " --uninstaller"}).mode, "install");
    EXPECT_EQ(facts({"process is uninstallation, but orvane does not exist on the machine"}).mode,
              "uninstall");
    EXPECT_EQ(facts({"User didn't want to start the procedure"}).mode, "uninstall");
    EXPECT_EQ(facts({"bootstrapper major version is 14 and orvane major version is 15"}).mode, "install");
    EXPECT_EQ(facts({"bootstrapper major version is 14 and orvane major version is 14"}).mode, std::nullopt);
    EXPECT_EQ(facts({"Encryption algorithm XOR is unsupported"}).mode, "install");
    EXPECT_EQ(facts({"Initializing orvane download"}).mode, std::nullopt);
}

TEST(RunLogTest, TellsTheLanguageByTheRuleOfTheBootstrapper) {
    const std::string chosen = "Initializing orvane download";
    EXPECT_EQ(facts({"Found en-US", "Found DE-CH", chosen}).language, "de");
    EXPECT_EQ(facts({"Found fr_CH", "Found ger", chosen}).language, "de");
    EXPECT_EQ(facts({"Found en-US", chosen}).language, "fr");
    EXPECT_EQ(facts({"Found en-US"}).language, std::nullopt);
    EXPECT_EQ(facts({"Checking preferred languages"}).language, std::nullopt);
}

TEST(RunLogTest, TellsTheStepOfTheLastStart) {
    EXPECT_EQ(facts({kLaunch}).restartStep, 12);
    EXPECT_EQ(facts({"Spawning orvane with args --pid 7 --step 0 --datetime x", kLaunch}).restartStep, 12);
    EXPECT_EQ(facts({"Spawning orvane with args --pid 7 --step x "}).restartStep, std::nullopt);
    EXPECT_EQ(facts({"Spawning orvane with args --version"}).restartStep, std::nullopt);
}

TEST(RunLogTest, TellsTheEnginesVersion) {
    const std::string compared = "remote version is 14.2.7 and local is 14.3";
    EXPECT_EQ(facts({kDescription}).engineVersion, "14.2.7");
    EXPECT_EQ(facts({kDescription, compared, "Using existing orvane"}).engineVersion, "14.3");
    EXPECT_EQ(facts({kDescription, compared, "Downloading latest orvane"}).engineVersion, "14.2.7");
    EXPECT_EQ(facts({"Orvane download info is <html>"}).engineVersion, std::nullopt);
    EXPECT_EQ(facts({R"(Orvane download info is {"Version": 14})"}).engineVersion, std::nullopt);
    EXPECT_EQ(facts({compared, "Using existing orvane"}).engineVersion, std::nullopt);
}

TEST(RunLogTest, TellsTheBootstrappersMajorVersion) {
    EXPECT_EQ(
        facts({"bootstrapper major version is 14 and orvane major version is 15"}).bootstrapperMajorVersion,
        "14");
    EXPECT_EQ(facts({"bootstrapper major version is 14"}).bootstrapperMajorVersion, std::nullopt);
}

} // namespace
} // namespace orvane::tools
