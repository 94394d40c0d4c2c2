#include "demo/Scenario.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;

std::vector<ScenarioCommand> frenchScenario(const std::string& text, std::int64_t step = 0) {
    return parseScenario(text, step, "fr-CH");
}

/// The message of a scenario of one line.
SendMessage messageOf(const std::string& line, const std::string& locale = "fr-ch") {
    const auto commands = parseScenario(line, 0, locale);
    EXPECT_EQ(commands.size(), 1U);
    return std::get<SendMessage>(commands.at(0));
}

void expectMessage(const std::string& line, EngineMessageType type, const std::string& text) {
    const SendMessage message = messageOf(line);
    EXPECT_EQ(message.type, type) << line;
    EXPECT_EQ(message.text, text) << line;
}

std::string failureOf(const std::string& text) {
    try {
        frenchScenario(text);
    } catch (const ScenarioError& error) {
        return error.what();
    }
    return "no failure";
}

TEST(ScenarioTest, HasAVerbForEachMessage) {
    expectMessage("progress 42", EngineMessageType::progress, "42");
    expectMessage("step Copie", EngineMessageType::step, "Copie");
    expectMessage("network 2", EngineMessageType::network, "2");
    expectMessage("end 0", EngineMessageType::end, "0");
    expectMessage("fatal Plus de place", EngineMessageType::end, "Plus de place");
    expectMessage("error Oups", EngineMessageType::error, "Oups");
    expectMessage("restart 07 Encore ?", EngineMessageType::restart, "07Encore ?");
    expectMessage("cancel 0", EngineMessageType::cancelButton, "0");
    expectMessage("raw -1 a | b", static_cast<EngineMessageType>(-1), "a | b");
}

TEST(ScenarioTest, TakesTextsAsTheyStand) {
    expectMessage("step   two blanks before and after  ", EngineMessageType::step,
                  "  two blanks before and after  ");
    expectMessage("error", EngineMessageType::error, "");
    expectMessage("error ", EngineMessageType::error, "");
    expectMessage("fatal", EngineMessageType::end, "");
}

TEST(ScenarioTest, ChoosesTheWordingOfTheLocale) {
    EXPECT_EQ(messageOf("step Copie | Kopieren", "fr-CH").text, "Copie");
    EXPECT_EQ(messageOf("step Copie | Kopieren", "de-ch").text, "Kopieren");
    EXPECT_EQ(messageOf("step Copie", "de-ch").text, "Copie");
    EXPECT_EQ(messageOf("restart 07 Encore ? | Nochmals ?", "de-ch").text, "07Nochmals ?");
}

TEST(ScenarioTest, ReadsWaitsFilesAndEnds) {
    const auto commands =
        frenchScenario("glide 10 20 300\nwait-ms 5\nwait-for /a b\nwait-interrupt\nwait-owner-gone\n"
                       "mark /m\nmark-on-interrupt /i\nrecord /r\nexit 7\n");
    ASSERT_EQ(commands.size(), 9U);
    const Glide glide = std::get<Glide>(commands[0]);
    EXPECT_EQ(glide.from, 10);
    EXPECT_EQ(glide.to, 20);
    EXPECT_EQ(glide.duration, 300ms);
    EXPECT_EQ(std::get<WaitDuration>(commands[1]).duration, 5ms);
    EXPECT_EQ(std::get<WaitForFile>(commands[2]).file, "/a b");
    EXPECT_TRUE(std::holds_alternative<WaitForInterrupt>(commands[3]));
    EXPECT_TRUE(std::holds_alternative<WaitForOwnersEnd>(commands[4]));
    EXPECT_EQ(std::get<MarkFile>(commands[5]).file, "/m");
    EXPECT_EQ(std::get<MarkWhenInterrupted>(commands[6]).file, "/i");
    EXPECT_EQ(std::get<RecordProcess>(commands[7]).file, "/r");
    EXPECT_EQ(std::get<ExitWith>(commands[8]).status, 7);
}

TEST(ScenarioTest, ReadsAFlood) {
    const Flood flood = std::get<Flood>(frenchScenario("flood 3  times | fois").at(0));
    EXPECT_EQ(flood.count, 3);
    EXPECT_EQ(flood.text, " times | fois");
    EXPECT_EQ(failureOf("flood"), "line 1: \"\" is not a number");
}

TEST(ScenarioTest, SkipsBlankLinesAndComments) {
    EXPECT_EQ(frenchScenario("\n# step no\nend 0\n\n").size(), 1U);
}

TEST(ScenarioTest, PlaysTheSectionOfTheStepOrElseTheBeginning) {
    const std::string text = "step a\nstep b\n[step 7]\nend 0\n[step 8]\n";
    EXPECT_EQ(frenchScenario(text, 0).size(), 2U);
    EXPECT_EQ(frenchScenario(text, 7).size(), 1U);
    EXPECT_EQ(frenchScenario(text, 8).size(), 0U);
    EXPECT_EQ(frenchScenario(text, 9).size(), 2U);
}

TEST(ScenarioTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(failureOf("step a\ndance"), "line 2: unknown command \"dance\"");
    EXPECT_EQ(failureOf("wait-ms soon"), "line 1: \"soon\" is not a number");
    EXPECT_EQ(failureOf("glide 1 2"), "line 1: \"\" is not a number");
    EXPECT_EQ(failureOf("exit 256"), "line 1: \"256\" is not a number");
    EXPECT_EQ(failureOf("mark"), "line 1: a path is missing");
    EXPECT_EQ(failureOf("[stage 7]"), "line 1: a section begins with [step N]");
    EXPECT_EQ(failureOf("[step 7"), "line 1: a section begins with [step N]");
    EXPECT_EQ(failureOf("[step x]\n"), "line 1: \"x\" is not a number");
}

TEST(ScenarioTest, IsCheckedInTheSectionsThatAreNotPlayed) {
    EXPECT_EQ(failureOf("end 0\n[step 7]\ndance"), "line 3: unknown command \"dance\"");
}

TEST(ScenarioTest, OfEachNameThatIsShippedCanBePlayed) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ORVANE_SCENARIOS)) {
        if (entry.path().extension() == ".scenario") {
            EXPECT_FALSE(frenchScenario(test::contentsOf(entry.path())).empty()) << entry.path();
            ++count;
        }
    }
    EXPECT_GE(count, 5);
}

} // namespace
} // namespace orvane::demo
