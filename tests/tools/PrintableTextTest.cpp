#include "tools/PrintableText.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(PrintableTextTest, LeavesWhatAPersonReads) {
    const std::string text = "Échec – 100 %\t日本 😀\n";
    EXPECT_EQ(printable(text), text);
    EXPECT_EQ(printable("one\r\ntwo"), "one\ntwo");
}

TEST(PrintableTextTest, ShowsWhatWouldSteerATerminal) {
    EXPECT_EQ(printable("\x1b[2J\x07\x7f\r"), "\\x1b[2J\\x07\\x7f\\x0d");
    EXPECT_EQ(printable("\xC2\x9B"), "\\u{9b}"); // a control sequence's beginning in one character
    EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(PrintableTextTest, ShowsWhatWouldTurnTextRoundOrHide) {
    EXPECT_EQ(printable("\xE2\x80\xAEgnp.exe"), "\\u{202e}gnp.exe");
    EXPECT_EQ(printable("\xE2\x81\xA6\u200B\uFEFF\u2028"), "\\u{2066}\\u{200b}\\u{feff}\\u{2028}");
}

TEST(PrintableTextTest, ShowsTheBytesOfWhatIsNotUtf8) {
    EXPECT_EQ(printable("\xFF"), "\\xff");
    EXPECT_EQ(printable("\xC3"), "\\xc3");
    EXPECT_EQ(printable("\xC0\xAF"), "\\xc0\\xaf");
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(printable("\xF5\x80\x80\x80"), "\\xf5\\x80\\x80\\x80");
    EXPECT_EQ(printable("\xE2\x82x"), "\\xe2\\x82x");
}

TEST(PrintableTextTest, OneLineStaysOneLine) { EXPECT_EQ(printableLine("a\nb\r\nc"), "a\\x0ab\\x0ac"); }

TEST(PrintableTextTest, EscapesEveryCharacterThatHtmlReads) {
    EXPECT_EQ(htmlEscaped("<b a=\"1\" c='2'>&amp;</b>"),
              "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;amp;&lt;/b&gt;");
}

} // namespace
} // namespace orvane::tools
