#include "platform/Url.h"

#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

TEST(UrlTest, UrlsAndPathsParse) {
    for (const std::string text :
         {"https://downloads.example/a/b.enc?x=1&y=%20#end", "/opt/Varlen/orvane/varlen-setup.enc", "a",
          "https://[::1]:8443/", "-._~:/?#[]@!$&'()*+,;=", "%00%fF"}) {
        EXPECT_TRUE(parsesAsUrl(text)) << text;
    }
}

TEST(UrlTest, NothingIsNoUrl) { EXPECT_FALSE(parsesAsUrl("")); }

TEST(UrlTest, CharactersThatNeedEncodingAreNotAdmitted) {
    for (const std::string text : {"a b", "a\"b", "a<b", "a>b", "a\\b", "a^b", "a`b", "a{b", "a|b", "a}b",
                                   "a\nb", "a\x7f", "caf\xc3\xa9"}) {
        EXPECT_FALSE(parsesAsUrl(text)) << text;
    }
    EXPECT_FALSE(parsesAsUrl(std::string_view("a\0b", 3)));
}

TEST(UrlTest, APercentSignNeedsTwoHexadecimalDigits) {
    for (const std::string text : {"%", "%4", "a%", "%4g", "%g4", "%%41"}) {
        EXPECT_FALSE(parsesAsUrl(text)) << text;
    }
    EXPECT_TRUE(parsesAsUrl("%41"));
}

} // namespace

} // namespace orvane::test
