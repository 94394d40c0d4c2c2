#include "demo/EngineArguments.h"

#include <gtest/gtest.h>

namespace orvane::demo {
namespace {

std::vector<std::string> usualArguments() {
    return {"--pid",
            "4711",
            "--owner",
            "kestrix.orvane.bootstrap.abcdefghij",
            "--ownerName",
            "Bootstrap",
            "--incomplete",
            "--locale",
            "de-ch",
            "--step",
            "7",
            "--datetime",
            "2024-03-05 14-07-09"};
}

std::string failureOf(const std::vector<std::string>& arguments) {
    try {
        parseEngineArguments(arguments);
    } catch (const EngineArgumentError& error) {
        return error.what();
    }
    return "no failure";
}

TEST(EngineArgumentsTest, AreReadWithTheirValues) {
    const EngineArguments arguments = parseEngineArguments(usualArguments());
    EXPECT_EQ(arguments.ownerProcess, 4711);
    EXPECT_EQ(arguments.owner, "kestrix.orvane.bootstrap.abcdefghij");
    EXPECT_EQ(arguments.ownerName, "Bootstrap");
    EXPECT_TRUE(arguments.incomplete);
    EXPECT_EQ(arguments.locale, "de-ch");
    EXPECT_EQ(arguments.step, 7);
    EXPECT_EQ(arguments.dateTime, "2024-03-05 14-07-09");
    EXPECT_TRUE(arguments.further.empty());
}

TEST(EngineArgumentsTest, KeepTheOwnersOptionsInTheirOrder) {
    auto all = usualArguments();
    all.insert(all.end(), {"--uninstall", "x", "--incomplete", "--step", "9"});
    const EngineArguments arguments = parseEngineArguments(all);
    EXPECT_EQ(arguments.step, 7);
    EXPECT_EQ(arguments.further,
              (std::vector<std::string>{"--uninstall", "x", "--incomplete", "--step", "9"}));
}

TEST(EngineArgumentsTest, AreRefusedWithoutAnOwner) {
    EXPECT_EQ(failureOf({"--pid", "1"}), "missing option --owner");
}

TEST(EngineArgumentsTest, AreRefusedWithoutAStep) {
    EXPECT_EQ(failureOf({"--pid", "1", "--owner", "x"}), "missing option --step");
}

TEST(EngineArgumentsTest, AreRefusedWhenAValueIsMissing) {
    EXPECT_EQ(failureOf({"--owner", "x", "--pid"}), "option --pid needs a value");
}

TEST(EngineArgumentsTest, AreRefusedWhenANumberIsNone) {
    EXPECT_EQ(failureOf({"--owner", "x", "--pid", "1", "--step", "7x"}),
              "option --step needs a number, not \"7x\"");
}

} // namespace
} // namespace orvane::demo
