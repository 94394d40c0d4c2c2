#include "platform/Utf8.h"

#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

TEST(Utf8Test, TextOfEveryLengthOfSequenceIsValid) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("plain"));
    EXPECT_TRUE(isValidUtf8("L\xe2\x80\x99installation a \xc3\xa9"
                            "chou\xc3\xa9"));
    EXPECT_TRUE(isValidUtf8(std::string_view("a\0b", 3)));
}

TEST(Utf8Test, TheFirstAndLastOfEachLengthAreValid) {
    for (const std::string text : {"\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf",
                                   "\xee\x80\x80", "\xef\xbf\xbf", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
        EXPECT_TRUE(isValidUtf8(text));
        EXPECT_TRUE(isValidUtf8("a" + text + "b"));
    }
}

TEST(Utf8Test, OverlongFormsAreInvalid) {
    for (const std::string text : {"\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf"}) {
        EXPECT_FALSE(isValidUtf8(text));
    }
}

TEST(Utf8Test, SurrogatesAndValuesPastTheLastAreInvalid) {
    for (const std::string text :
         {"\xed\xa0\x80", "\xed\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff"}) {
        EXPECT_FALSE(isValidUtf8(text));
    }
}

TEST(Utf8Test, BrokenSequencesAreInvalid) {
    for (const std::string text : {"\x80", "\xbf", "\xc3", "\xc3(", "\xe2\x82", "\xe2(\xa1", "\xe2\x82(",
                                   "\xf0\x90\x80", "\xf0\x90\x80(", "\xf0\x90(\x80"}) {
        EXPECT_FALSE(isValidUtf8(text));
        EXPECT_FALSE(isValidUtf8("a" + text));
    }
}

} // namespace

} // namespace orvane::test
