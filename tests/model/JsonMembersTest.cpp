#include "model/JsonMembers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

JsonOutcome outcomeOf(std::string_view document) {
    return readJsonMembers(document, [](std::string_view, const JsonValue&) {});
}

/// Each member as "key:kind:value", as written.
std::vector<std::string> membersOf(std::string_view document) {
    std::vector<std::string> members;
    readJsonMembers(document, [&](std::string_view key, const JsonValue& value) {
        constexpr const char* kinds[] = {":text:", ":number:", ":other:"};
        members.push_back(std::string(key) + kinds[static_cast<int>(value.kind)] +
                          std::string(value.written));
    });
    return members;
}

TEST(JsonMembersTest, TheOutermostObjectsMembersComeInTheirOrder) {
    EXPECT_EQ(membersOf(R"( {"a" : "x\ny" , "b":-1.5E+3,"a":null,"":[{"c":1}], "d": {"e": {}}, "f":true } )"),
              (std::vector<std::string>{R"(a:text:x\ny)", "b:number:-1.5E+3",
                                        "a:other:", ":other:", "d:other:", "f:other:"}));
    EXPECT_EQ(membersOf("{}"), std::vector<std::string>{});
    EXPECT_EQ(membersOf(R"([{"a": 1}])"), std::vector<std::string>{});
}

TEST(JsonMembersTest, EveryKindOfValueIsADocument) {
    for (const char* text : {"{}",
                             "[]",
                             " [ ] ",
                             "[[],{}]",
                             "[1,2]",
                             R"("")",
                             "0",
                             "-0",
                             "10",
                             "1.0",
                             "1e9",
                             "0E-1",
                             "true",
                             "false",
                             "null",
                             "\xEF\xBB\xBF{}",
                             "\t\r\n 1 \t\r\n",
                             R"("\"\\\/\b\f\n\r\t\u00eF")",
                             R"("\ud83d\ude00")",
                             "\"\x7f\""}) {
        EXPECT_EQ(outcomeOf(text).errorPosition, std::nullopt) << text;
    }
    EXPECT_TRUE(outcomeOf(" {}").isObject);
    EXPECT_FALSE(outcomeOf("[{}]").isObject);
}

TEST(JsonMembersTest, AnErrorIsAtTheByteThatIsWrong) {
    const std::vector<std::pair<std::string, std::size_t>> documents{{"", 0},
                                                                     {" ", 1},
                                                                     {"x", 0},
                                                                     {"{} x", 3},
                                                                     {"{}{}", 2},
                                                                     {"[1,]", 3},
                                                                     {"[,1]", 1},
                                                                     {"[1 2]", 3},
                                                                     {"[1}", 2},
                                                                     {"{]", 1},
                                                                     {"{\"a\"}", 4},
                                                                     {"{\"a\":}", 5},
                                                                     {"{\"a\":1,}", 7},
                                                                     {"{1:2}", 1},
                                                                     {"{\"a\" 1}", 5},
                                                                     {"[", 1},
                                                                     {"{\"a\":[", 6},
                                                                     {"]", 0},
                                                                     {"01", 1},
                                                                     {"-", 1},
                                                                     {"+1", 0},
                                                                     {".5", 0},
                                                                     {"1.", 2},
                                                                     {"1e", 2},
                                                                     {"1e+", 3},
                                                                     {"--1", 1},
                                                                     {"0x1", 1},
                                                                     {"tru", 0},
                                                                     {"nul", 0},
                                                                     {"truex", 4},
                                                                     {"\"a", 2},
                                                                     {"\"\n\"", 1},
                                                                     {"\"\\x\"", 2},
                                                                     {"\"\\u12g4\"", 3},
                                                                     {"\"\\ud83d\"", 7},
                                                                     {"\"\\ude00\"", 7},
                                                                     {"\"\\ud83d\\u0041\"", 13},
                                                                     {"\"\\", 2},
                                                                     {"'a'", 0},
                                                                     {"[1]\f", 3},
                                                                     {"//", 0}};
    for (const auto& [text, position] : documents) {
        EXPECT_EQ(outcomeOf(text).errorPosition, position) << text;
    }
}

TEST(JsonMembersTest, EscapesAreResolved) {
    EXPECT_EQ(jsonText(R"(a\"\\\/\b\f\n\r\tz)"), "a\"\\/\b\f\n\r\tz");
    EXPECT_EQ(jsonText(R"(\u0041\u00e9\u20ac\ud83d\ude00!)"), "Aé€😀!");
    EXPECT_EQ(jsonText("é"), "é");
    EXPECT_EQ(jsonText(""), "");
    EXPECT_EQ(jsonText(R"(\u0000)"), std::string(1, '\0'));
}

} // namespace
} // namespace orvane
