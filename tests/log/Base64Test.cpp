#include "log/Base64.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

std::string encoded(std::string_view text) { return base64Encoded(bytesOf(text)); }

TEST(Base64Test, NothingBecomesTheEmptyText) { EXPECT_EQ(encoded(""), ""); }

TEST(Base64Test, ThreeBytesBecomeFourCharacters) {
    EXPECT_EQ(encoded("abc"), "YWJj");
    EXPECT_EQ(encoded("foobar"), "Zm9vYmFy");
}

TEST(Base64Test, AnIncompleteGroupIsPadded) {
    EXPECT_EQ(encoded("f"), "Zg==");
    EXPECT_EQ(encoded("fo"), "Zm8=");
    EXPECT_EQ(encoded("foob"), "Zm9vYg==");
    EXPECT_EQ(encoded("fooba"), "Zm9vYmE=");
}

TEST(Base64Test, EveryCharacterOfTheStandardAlphabetIsUsed) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Bytes bytes;
    for (unsigned value = 0; value < 64; value += 4) {
        const unsigned bits = value << 18U | (value + 1) << 12U | (value + 2) << 6U | (value + 3);
        for (const unsigned shift : {16U, 8U, 0U}) {
            bytes.push_back(static_cast<std::byte>(bits >> shift & 0xFFU));
        }
    }
    EXPECT_EQ(base64Encoded(bytes), alphabet);
}

TEST(Base64Test, BytesThatAreNoTextAreEncodedToo) {
    const Bytes bytes{std::byte{0x00}, std::byte{0xFF}, std::byte{0x80}, std::byte{0x00}};
    EXPECT_EQ(base64Encoded(bytes), "AP+AAA==");
}

TEST(Base64Test, LongContentsHaveNoLineBreaks) {
    std::string expected;
    for (int group = 0; group < 1000; ++group) {
        expected += "YWJj";
    }
    std::string contents;
    for (int group = 0; group < 1000; ++group) {
        contents += "abc";
    }
    EXPECT_EQ(encoded(contents), expected);
}

TEST(Base64Test, PiecesOfWholeGroupsMakeOneText) {
    std::string text = "before ";
    appendBase64(text, bytesOf("foobar"));
    appendBase64(text, {});
    appendBase64(text, bytesOf("fooba"));
    EXPECT_EQ(text, "before Zm9vYmFyZm9vYmE=");
}

TEST(Base64Test, TheLengthIsKnownBeforehand) {
    for (std::size_t count = 0; count < 10; ++count) {
        EXPECT_EQ(base64Length(count), encoded(std::string(count, 'x')).size());
    }
}

} // namespace
} // namespace orvane
