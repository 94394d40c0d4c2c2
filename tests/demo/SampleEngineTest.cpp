#include "platform/Process.h"
#include "platform/ProcessInfo.h"
#include "tests/demo/ServiceEnd.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace orvane::test {
namespace {

using Message = std::pair<std::int32_t, std::string>;

/// A sample engine that plays a scenario for this process.
class SampleEngineTest : public testing::Test {
protected:
    void play(const std::string& scenario, const std::string& step = "0",
              const std::string& locale = "fr-ch") {
        writeFile(folder_.path() / "scenario", scenario);
        engine_.setLaunchPath(ORVANE_SAMPLE_ENGINE);
        engine_.setArguments({"--pid", std::to_string(owner_), "--owner", service_.name(), "--ownerName",
                              "test", "--incomplete", "--locale", locale, "--step", step, "--datetime",
                              "now"});
        engine_.launch();
    }

    std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }

    TemporaryFolder folder_;
    EnvironmentVariable scenario_{"ORVANE_SAMPLE_SCENARIO", (folder_.path() / "scenario").string()};
    ServiceEnd service_;
    std::int64_t owner_ = platform::processIdentifier();
    platform::Process engine_;
};

std::string versionPrintedBy(const std::optional<std::string>& replacement) {
    const EnvironmentVariable version("ORVANE_SAMPLE_VERSION", replacement);
    platform::Process engine;
    engine.setLaunchPath(ORVANE_SAMPLE_ENGINE);
    engine.setArguments({"--version"});
    engine.pipeStandardOutput();
    engine.launch();
    return std::string(textOf(engine.readStandardOutputToEnd()));
}

/// Nobody's number: the kernel gives it to another process only after having gone through all others.
std::int64_t identifierOfEndedProcess() {
    platform::Process shell;
    shell.setLaunchPath("/bin/sh");
    shell.setArguments({"-c", "echo $$"});
    shell.pipeStandardOutput();
    shell.launch();
    const std::string printed(textOf(shell.readStandardOutputToEnd()));
    EXPECT_EQ(shell.waitUntilExit(), 0);
    return std::stoll(printed);
}

TEST_F(SampleEngineTest, PrintsItsVersionOrTheOneItIsTold) {
    EXPECT_EQ(versionPrintedBy(std::nullopt), "14.2.7\n");
    EXPECT_EQ(versionPrintedBy("13.0"), "13.0\n");
}

TEST_F(SampleEngineTest, SendsWhatTheScenarioSays) {
    play("step Copie\nprogress 5\nend 0\n");
    EXPECT_EQ(service_.receive(), Message(1, "Copie"));
    EXPECT_EQ(service_.receive(), Message(0, "5"));
    EXPECT_EQ(service_.receive(), Message(3, "0"));
    EXPECT_EQ(engine_.waitUntilExit(), 0);
}

TEST_F(SampleEngineTest, PlaysTheSectionOfItsStepInItsLanguage) {
    play("step a\n[step 7]\nstep b | c\n", "7", "de-ch");
    EXPECT_EQ(service_.receive(), Message(1, "c"));
    EXPECT_EQ(engine_.waitUntilExit(), 0);
}

TEST_F(SampleEngineTest, GlidesThroughEachPositionBothWays) {
    play("glide 1 3 10\nglide 3 2 0\n");
    for (const char* position : {"1", "2", "3", "3", "2"}) {
        EXPECT_EQ(service_.receive(), Message(0, position));
    }
}

TEST_F(SampleEngineTest, FloodsWithNumberedSteps) {
    play("flood 3  mots\nflood 0\nend 0\n");
    for (const char* step : {"1 mots", "2 mots", "3 mots"}) {
        EXPECT_EQ(service_.receive(), Message(1, step));
    }
    EXPECT_EQ(service_.receive(), Message(3, "0"));
}

TEST_F(SampleEngineTest, EndsWithTheStatusOfTheScenario) {
    play("exit 9\nstep never\n");
    EXPECT_EQ(engine_.waitUntilExit(), 9);
}

TEST_F(SampleEngineTest, WaitsForAFileAndMarksAnother) {
    play("step a\nwait-for " + file("go").string() + "\nmark " + file("went").string() + "\n");
    EXPECT_EQ(service_.receive(), Message(1, "a"));
    EXPECT_FALSE(std::filesystem::exists(file("went")));
    writeFile(file("go"), "");
    EXPECT_EQ(engine_.waitUntilExit(), 0);
    EXPECT_TRUE(std::filesystem::exists(file("went")));
}

TEST_F(SampleEngineTest, EndsWhenInterruptedAndMarksIt) {
    play("mark-on-interrupt " + file("interrupted").string() + "\nstep a\nwait-interrupt\nstep never\n");
    EXPECT_EQ(service_.receive(), Message(1, "a"));
    engine_.interrupt();
    EXPECT_EQ(engine_.waitUntilExit(), 130);
    EXPECT_TRUE(std::filesystem::exists(file("interrupted")));
}

TEST_F(SampleEngineTest, LeavesWhenItsOwnerHasEnded) {
    owner_ = identifierOfEndedProcess();
    play("step a\nwait-interrupt\n");
    EXPECT_EQ(service_.receive(), Message(1, "a"));
    EXPECT_EQ(engine_.waitUntilExit(), 1);
}

TEST_F(SampleEngineTest, RecordsWhatItWasGiven) {
    const EnvironmentVariable variable("ORVANE_TEST_MARK", "here");
    play("record " + file("record.json").string() + "\n");
    EXPECT_EQ(engine_.waitUntilExit(), 0);
    const auto record = nlohmann::json::parse(contentsOf(file("record.json")));
    EXPECT_EQ(record["arguments"][0], ORVANE_SAMPLE_ENGINE);
    EXPECT_EQ(record["arguments"][13], "now");
    EXPECT_EQ(record["environment"]["ORVANE_TEST_MARK"], "here");
    EXPECT_EQ(record["workingDirectory"], std::filesystem::current_path().string());
    EXPECT_EQ(record["descriptors"].size(), 3U) << record["descriptors"];
    EXPECT_EQ(record["blockedSignals"], "0000000000000000");
    EXPECT_TRUE(record.contains("ignoredSignals"));
    EXPECT_TRUE(record.contains("caughtSignals"));
}

TEST_F(SampleEngineTest, ShowsWhatIsWrongWithItsScenario) {
    play("dance\n");
    EXPECT_EQ(service_.receive(), Message(3, "Scenario: line 1: unknown command \"dance\""));
    EXPECT_EQ(engine_.waitUntilExit(), 65);
}

TEST_F(SampleEngineTest, RefusesToStartWithoutAnOwner) {
    engine_.setLaunchPath(ORVANE_SAMPLE_ENGINE);
    engine_.launch();
    EXPECT_EQ(engine_.waitUntilExit(), 64);
}

} // namespace
} // namespace orvane::test
