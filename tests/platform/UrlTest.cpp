#include "platform/Url.h"

#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

TEST(UrlTest, UrlsAndPathsParse) {
    for (const std::string text :
         {"https://downloads.example/a/b.enc?x=1&y=%20#end", "/opt/Varlen/orvane/varlen-setup.enc", "a",
          "https://[::1]", "https://[::1]:8443/", "https://me@[fe80::1]:1?x#y", "//[::1]/",
          "-._~:/?#@!$&'()*+,;=", "%00%fF", "#", "a#b"}) {
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

TEST(UrlTest, BracketsEncloseTheWholeHostOrAreNotAdmitted) {
    for (const std::string text :
         {"https://[::1", "https://::1]", "https://[::1]x/", "https://[]/", "https://[[::1]]/",
          "https://a[::1]/", "https://]::1[/", "https://[::1]/[::1]", "https://downloads.example/a[1]",
          "https://downloads.example/?a[]=1", "https://downloads.example/#[::1]", "https:/[::1]/", "[::1]"}) {
        EXPECT_FALSE(parsesAsUrl(text)) << text;
    }
}

TEST(UrlTest, AUrlHasOneNumberSignAtMost) {
    for (const std::string text : {"a#b#c", "##", "https://downloads.example/#one#two"}) {
        EXPECT_FALSE(parsesAsUrl(text)) << text;
    }
}

std::string refusal(std::string_view url) {
    const auto error = refusalOfAddress(url);
    return error ? error->localizedDescription() : "";
}

TEST(UrlTest, OnlyAddressesOfHttpsAreGoneTo) {
    for (const std::string url :
         {"https://downloads.example/engine", "HTTPS://downloads.example", "hTTps://[::1]/", "https:"}) {
        EXPECT_EQ(refusal(url), "") << url;
    }
    for (const std::string url :
         {"", "http://downloads.example/", "HTTP://downloads.example/", "file:///etc/passwd",
          "ftp://downloads.example/", "https", "httpsx://downloads.example/", " https://downloads.example/",
          "//downloads.example/", "downloads.example/engine", "javascript:https:", "xhttps:"}) {
        EXPECT_EQ(refusal(url), "The address \"" + url + "\" is refused: it does not begin with https:");
    }
}

TEST(UrlTest, ARefusalShowsOnlyTextAndNotWithoutEnd) {
    EXPECT_EQ(refusal("ftp:a\r\nb\xff\x1b\x7f"),
              "The address \"ftp:a??b???\" is refused: it does not begin with https:");
    EXPECT_LT(refusal("ftp:" + std::string(100'000, 'x')).size(), 1100U);
}

} // namespace

} // namespace orvane::test
