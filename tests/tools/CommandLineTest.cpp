#include "tools/CommandLine.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

const CommandLineGrammar kGrammar{
    .options = {"--one"}, .listOptions = {"--many"}, .flags = {"--flag"}, .operands = {"first", "second"}};

std::string failureOf(const std::vector<std::string>& arguments) {
    try {
        const CommandLine line(arguments, kGrammar);
    } catch (const ToolError& error) {
        EXPECT_EQ(error.status(), ExitStatus::usage);
        return error.what();
    }
    return "no failure";
}

TEST(CommandLineTest, IsTakenApartInAnyOrder) {
    const CommandLine line({"a", "--many", "1", "--flag", "b", "--one", "x", "--many", "2"}, kGrammar);
    EXPECT_EQ(line.required("first"), "a");
    EXPECT_EQ(line.required("second"), "b");
    EXPECT_EQ(line.value("--one"), "x");
    EXPECT_EQ(line.values("--many"), (std::vector<std::string>{"1", "2"}));
    EXPECT_TRUE(line.has("--flag"));
}

TEST(CommandLineTest, WhatIsNotGivenIsAbsent) {
    const CommandLine line({}, kGrammar);
    EXPECT_EQ(line.value("--one"), std::nullopt);
    EXPECT_TRUE(line.values("--many").empty());
    EXPECT_FALSE(line.has("--flag"));
    EXPECT_THROW(line.required("first"), ToolError);
}

TEST(CommandLineTest, AnOperandMayBeEmptyUnlessItIsRequired) {
    const CommandLine line({""}, kGrammar);
    EXPECT_EQ(line.value("first"), "");
    EXPECT_THROW(line.required("first"), ToolError);
}

TEST(CommandLineTest, AfterTwoHyphensEverythingIsAnOperand) {
    const CommandLine line({"--", "--flag", "--"}, kGrammar);
    EXPECT_EQ(line.required("first"), "--flag");
    EXPECT_EQ(line.required("second"), "--");
    EXPECT_FALSE(line.has("--flag"));
}

TEST(CommandLineTest, HelpIsAskedForAmongTheOptionsAlone) {
    EXPECT_TRUE(asksForHelp({"a", "--other", "--help"}));
    EXPECT_TRUE(asksForHelp({"-h"}));
    EXPECT_FALSE(asksForHelp({"a", "--flag"}));
    EXPECT_FALSE(asksForHelp({"a", "--", "--help", "-h"}));
}

TEST(CommandLineTest, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(failureOf({"--other"}), "unknown option --other");
    EXPECT_EQ(failureOf({"a", "b", "c"}), "unexpected argument \"c\"");
    EXPECT_EQ(failureOf({"--one"}), "--one needs a value");
    EXPECT_EQ(failureOf({"--one", ""}), "--one needs a value");
    EXPECT_EQ(failureOf({"--one", "1", "--one", "1"}), "--one is given twice");
    EXPECT_EQ(failureOf({"--flag", "--flag"}), "--flag is given twice");
}

} // namespace
} // namespace orvane::tools
