#include "tools/CommandLine.h"
#include "tools/OptionChecks.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

/// A tool with one option of each kind.
struct SampleTool {
    std::string first;
    std::string second;
    std::string one;
    std::vector<std::string> many;
    bool flag = false;

    void read(const Arguments& arguments) {
        CommandLine line("sample-tool command", "Does nothing.", "0 always.");
        line.option("FIRST", first, "", "the first operand")->required();
        line.add_option("SECOND", second, "may be empty");
        line.option("--one", one, "VALUE", "takes one value");
        line.listOption("--many", many, "VALUE", "takes one value each time");
        line.add_flag("--flag", flag, "takes none");
        line.read(arguments);
    }
};

SampleTool sampleOf(const Arguments& arguments) {
    SampleTool tool;
    tool.read(arguments);
    return tool;
}

std::string failureOf(const Arguments& arguments) {
    try {
        sampleOf(arguments);
    } catch (const ToolError& error) {
        EXPECT_EQ(error.status(), ExitStatus::usage);
        return error.what();
    }
    return "no failure";
}

std::string helpFor(const Arguments& arguments) {
    try {
        sampleOf(arguments);
    } catch (const HelpRequest& help) {
        return help.what();
    }
    return {};
}

TEST(CommandLineTest, TakesOptionsAndOperandsInAnyOrder) {
    const SampleTool tool = sampleOf({"a", "--many", "1", "--flag", "b", "--one=x", "--many", "2"});
    EXPECT_EQ(tool.first, "a");
    EXPECT_EQ(tool.second, "b");
    EXPECT_EQ(tool.one, "x");
    EXPECT_EQ(tool.many, (std::vector<std::string>{"1", "2"}));
    EXPECT_TRUE(tool.flag);
}

TEST(CommandLineTest, TakesOneValueForEachOccurrenceOfAListOption) {
    const SampleTool tool = sampleOf({"--many", "1", "a", "b"});
    EXPECT_EQ(tool.many, (std::vector<std::string>{"1"}));
    EXPECT_EQ(tool.second, "b");
}

TEST(CommandLineTest, PassesOperandsOnUnchanged) {
    for (const char* text :
         {"", " ", "-", "-1", "-1.5", "{}", "[]", "[a,b]", "a,b", "a=b", "\"a b\"", "%%", "++"}) {
        EXPECT_EQ(sampleOf({"a", text}).second, text);
        EXPECT_EQ(sampleOf({"a", "--one", "x", "--", text}).second, text);
    }
}

TEST(CommandLineTest, TakesEverythingAfterTwoHyphensForAnOperand) {
    const SampleTool tool = sampleOf({"--", "--flag", "--"});
    EXPECT_EQ(tool.first, "--flag");
    EXPECT_EQ(tool.second, "--");
    EXPECT_FALSE(tool.flag);
    EXPECT_EQ(sampleOf({"--", "--help"}).first, "--help");
    EXPECT_EQ(sampleOf({"a", "--", "-h"}).second, "-h");
}

TEST(CommandLineTest, PrintsTheSameHelpForBothOptionsWhateverElseIsMissing) {
    const std::string help = helpFor({"--help"});
    EXPECT_EQ(help, helpFor({"-h"}));
    EXPECT_EQ(help, helpFor({"a", "--one", "1", "-h"}));
    EXPECT_EQ(help, "Usage: sample-tool command FIRST [SECOND] [OPTIONS]\n"
                    "\n"
                    "Does nothing.\n"
                    "\n"
                    "Operands:\n"
                    "  FIRST                    the first operand\n"
                    "  SECOND                   may be empty\n"
                    "\n"
                    "Options:\n"
                    "  -h,--help                print this text\n"
                    "  --one VALUE              takes one value\n"
                    "  --many VALUE             takes one value each time\n"
                    "  --flag                   takes none\n"
                    "\n"
                    "Exit status: 0 always.\n"
                    "See also sample-tool(1).\n");
}

TEST(CommandLineTest, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(failureOf({"a", "--other"}), "The following argument was not expected: --other");
    EXPECT_EQ(failureOf({"a", "-x"}), "The following argument was not expected: -x");
    EXPECT_EQ(failureOf({"a", "b", "c"}), "The following argument was not expected: c");
}

TEST(CommandLineTest, RefusesValuesThatAreMissingEmptyOrGivenTwice) {
    EXPECT_EQ(failureOf({}), "FIRST is required");
    EXPECT_EQ(failureOf({""}), "FIRST: the value is empty");
    EXPECT_EQ(failureOf({"a", "--one"}), "--one: 1 required VALUE missing");
    EXPECT_EQ(failureOf({"a", "--one", ""}), "--one: the value is empty");
    EXPECT_EQ(failureOf({"a", "--one", "1", "--one", "1"}), "--one: At Most 1 required but received 2");
}

TEST(CommandLineTest, ChecksVersionsAndAddresses) {
    for (const char* version : {"14", "14.2", "14.02.7.0"}) {
        EXPECT_EQ(checkVersion(version), "") << version;
    }
    for (const char* version : {"", ".", "14.", ".2", "14..2", "14.2b", "v14", "14 2", "-1"}) {
        EXPECT_EQ(checkVersion(version),
                  "must be a dotted version such as 14.2.7, not \"" + std::string(version) + "\"");
    }
    EXPECT_EQ(checkHttpsAddress("https://h.example/a"), "");
    for (const char* url : {"", "http://h.example/a", "engine", "https://h.example/a b"}) {
        EXPECT_EQ(checkHttpsAddress(url), "must be an HTTPS URL, not \"" + std::string(url) + "\"");
    }
}

} // namespace
} // namespace orvane::tools
