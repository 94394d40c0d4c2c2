#include "sender/MessageNumber.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

TEST(MessageNumberTest, DigitsAreANumber) {
    EXPECT_EQ(messageNumber("0"), 0);
    EXPECT_EQ(messageNumber("42"), 42);
    EXPECT_EQ(messageNumber("07"), 7);
    EXPECT_EQ(messageNumber("0000000000000000000000012"), 12);
}

TEST(MessageNumberTest, OneSignMayPrecedeThem) {
    EXPECT_EQ(messageNumber("+42"), 42);
    EXPECT_EQ(messageNumber("-42"), -42);
    EXPECT_EQ(messageNumber("-0"), 0);
}

TEST(MessageNumberTest, TwoSignsOrASignAloneAreNoNumber) {
    for (const char* text : {"+-1", "-+1", "++1", "--1", "+", "-", "+-", "1-", "1+"}) {
        EXPECT_EQ(messageNumber(text), std::nullopt) << text;
    }
}

TEST(MessageNumberTest, NothingMayStandAroundTheNumber) {
    for (const char* text : {" 42", "42 ", "42\n", "\t42", "42\r\n", "4 2", "+ 42", "7x", "x7"}) {
        EXPECT_EQ(messageNumber(text), std::nullopt) << '"' << text << '"';
    }
    EXPECT_EQ(messageNumber(std::string_view("42\0", 3)), std::nullopt);
}

TEST(MessageNumberTest, TheEmptyTextIsNoNumber) { EXPECT_EQ(messageNumber(""), std::nullopt); }

TEST(MessageNumberTest, OtherNotationsAreNoNumbers) {
    for (const char* text : {"0x10", "1.0", "1e3", "1,000", "ff", "\xD9\xA4", "\xEF\xBC\x94"}) {
        EXPECT_EQ(messageNumber(text), std::nullopt) << text;
    }
}

TEST(MessageNumberTest, TheRangeIsThatOf64SignedBits) {
    EXPECT_EQ(messageNumber("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(messageNumber("+9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(messageNumber("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(messageNumber("9223372036854775808"), std::nullopt);
    EXPECT_EQ(messageNumber("-9223372036854775809"), std::nullopt);
    EXPECT_EQ(messageNumber("100000000000000000000000000"), std::nullopt);
}

} // namespace
} // namespace orvane
