#include "platform/Digest.h"

#include "tests/support/DeathTest.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

using platform::Digest;
using platform::DigestAlgorithm;

std::string hexadecimal(const Bytes& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        text += kDigits[std::to_integer<int>(byte) >> 4];
        text += kDigits[std::to_integer<int>(byte) & 15];
    }
    return text;
}

std::string digestOf(DigestAlgorithm algorithm, std::string_view text) {
    Digest digest(algorithm);
    digest.update(bytesOf(text));
    return hexadecimal(digest.final());
}

// The values of RFC 1321, A.5, and of FIPS 180-2, B.
TEST(DigestTest, Md5GivesThePublishedValues) {
    EXPECT_EQ(digestOf(DigestAlgorithm::md5, ""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(digestOf(DigestAlgorithm::md5, "abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(digestOf(DigestAlgorithm::md5, "message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
}

TEST(DigestTest, Sha256GivesThePublishedValues) {
    EXPECT_EQ(digestOf(DigestAlgorithm::sha256, ""),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(digestOf(DigestAlgorithm::sha256, "abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(digestOf(DigestAlgorithm::sha256, "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

TEST(DigestTest, DataMayArriveInPiecesOfAnySize) {
    const std::string text(1'000'000, 'a');
    Digest digest(DigestAlgorithm::sha256);
    for (std::size_t position = 0, size = 0; position < text.size(); position += size) {
        size = std::min(text.size() - position, position % 977 + 1);
        digest.update(bytesOf(std::string_view(text).substr(position, size)));
        digest.update({});
    }
    EXPECT_EQ(hexadecimal(digest.final()),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

using DigestDeathTest = DeathTest;

TEST_F(DigestDeathTest, MoreThanA32BitLengthAtOnceIsAProgrammingError) {
    Digest digest(DigestAlgorithm::md5);
    const std::byte first{};
    const ByteView tooMuch(&first, std::size_t{1} << 32); // its length alone is looked at
    EXPECT_DEATH(digest.update(tooMuch), "programming error: a digest was fed more than 4294967295 bytes");
}

TEST(DigestTest, ComputationsSideBySideDoNotMix) {
    Digest first(DigestAlgorithm::md5);
    Digest second(DigestAlgorithm::md5);
    first.update(bytesOf("ab"));
    second.update(bytesOf("message "));
    first.update(bytesOf("c"));
    second.update(bytesOf("digest"));
    EXPECT_EQ(hexadecimal(first.final()), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(hexadecimal(second.final()), "f96b697d7cb7938d525a2f31aaf161d0");
}

} // namespace

} // namespace orvane::test
