#include "tools/MessageOptions.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

const std::string kUnassigned = std::to_string(kFirstUnassignedEngineMessageType);

std::optional<ExitStatus> failureOf(const std::vector<std::string>& arguments) {
    try {
        parseMessageOptions(arguments);
    } catch (const ToolError& error) {
        return error.status();
    }
    return std::nullopt;
}

std::optional<ExitStatus> failureOfMessage(const std::string& type, const std::string& text) {
    return failureOf({"owner", type, text});
}

TEST(MessageOptionsTest, AreRead) {
    const MessageOptions options = parseMessageOptions({"owner", "step", "Copying files"});
    EXPECT_EQ(options.owner, "owner");
    EXPECT_EQ(options.type, EngineMessageType::step);
    EXPECT_EQ(options.text, "Copying files");
}

TEST(MessageOptionsTest, KnowEachTypeByItsNameAndItsNumber) {
    for (const EngineMessageKind& kind : kEngineMessageKinds) {
        const std::string name(kind.name);
        const std::string number = std::to_string(static_cast<std::int32_t>(kind.type));
        EXPECT_EQ(parseMessageOptions({"o", name, "x", "--force"}).type, kind.type);
        EXPECT_EQ(parseMessageOptions({"o", number, "x", "--force"}).type, kind.type);
    }
    EXPECT_EQ(parseMessageOptions({"o", "cancel", "0"}).type, EngineMessageType::cancelButton);
    EXPECT_EQ(parseMessageOptions({"o", "5", "07 ?"}).type, EngineMessageType::restart);
    EXPECT_EQ(failureOf({"o", "steps", "x"}), ExitStatus::usage);
    EXPECT_EQ(failureOf({"o", "2147483648", "--force"}), ExitStatus::usage);
}

TEST(MessageOptionsTest, TakeAnAbsentTextForAnEmptyOne) {
    EXPECT_EQ(parseMessageOptions({"o", "error"}).text, "");
    EXPECT_EQ(parseMessageOptions({"o", "step", ""}).text, "");
}

TEST(MessageOptionsTest, NeedAnOwnerAndAType) {
    EXPECT_EQ(failureOf({}), ExitStatus::usage);
    EXPECT_EQ(failureOf({"", "step"}), ExitStatus::usage);
    EXPECT_EQ(failureOf({"owner"}), ExitStatus::usage);
}

TEST(MessageOptionsTest, RefuseAMessageThatWouldBeIgnored) {
    for (const auto& [type, text] : std::vector<std::pair<std::string, std::string>>{{"progress", ""},
                                                                                     {"progress", " 42"},
                                                                                     {"progress", "101"},
                                                                                     {"progress", "-1"},
                                                                                     {"network", "3"},
                                                                                     {"cancel", "2"},
                                                                                     {"end", "2"},
                                                                                     {kUnassigned, ""},
                                                                                     {"-1", ""}}) {
        EXPECT_EQ(failureOfMessage(type, text), ExitStatus::badData) << type << " " << text;
    }
}

TEST(MessageOptionsTest, RefuseAMessageThatWouldBeCutOrStopTheBootstrapper) {
    EXPECT_EQ(failureOfMessage("step", std::string(4095, 'a')), std::nullopt);
    EXPECT_EQ(failureOfMessage("step", std::string(4096, 'a')), ExitStatus::badData);
    EXPECT_EQ(failureOfMessage("step", "\xFF"), ExitStatus::badData);
    EXPECT_EQ(failureOfMessage("restart", "7"), ExitStatus::badData);
    EXPECT_EQ(failureOfMessage("restart", " 7 ?"), ExitStatus::badData);
}

TEST(MessageOptionsTest, LetAnEndSayWhatWentWrong) {
    for (const char* text : {"0", "1", "3", "", "No room on the disk"}) {
        EXPECT_EQ(failureOfMessage("end", text), std::nullopt) << text;
    }
}

TEST(MessageOptionsTest, RefuseNothingThatIsForced) {
    EXPECT_EQ(failureOf({"o", "progress", " 42", "--force"}), std::nullopt);
    EXPECT_EQ(parseMessageOptions({"o", "-1", "x", "--force"}).type, static_cast<EngineMessageType>(-1));
}

} // namespace
} // namespace orvane::tools
