#include "verify/Crypto.h"

#include "platform/Error.h"
#include "tests/support/DeathTest.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>
#include <thread>

namespace orvane {
namespace {

using test::TemporaryFolder;
using test::writeFile;

constexpr char kMd5OfNothing[] = "d41d8cd98f00b204e9800998ecf8427e";
constexpr char kSha256OfNothing[] = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
constexpr std::size_t kMebibyte = 1048576;

Bytes bytes(std::initializer_list<unsigned> values) {
    Bytes result;
    for (const unsigned value : values) {
        result.push_back(static_cast<std::byte>(value));
    }
    return result;
}

/// Bytes that repeat only after a prime number of them, so that a piece that is lost or fed twice shows.
std::string contents(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t index = 0; index < size; ++index) {
        text[index] = static_cast<char>(index % 251);
    }
    return text;
}

XorResult transformed(const Bytes& content, std::string_view hexaKey) {
    return computeXOREncryption(ByteView(content), hexaKey);
}

// Digests.

class ChecksumTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& text) const {
        writeFile(folder.path() / "file", text);
        return folder.path() / "file";
    }

    TemporaryFolder folder;
};

TEST_F(ChecksumTest, AnEmptyFileHasTheDigestOfNoData) {
    EXPECT_EQ(md5File(file("")), kMd5OfNothing);
    EXPECT_EQ(sha256File(file("")), kSha256OfNothing);
}

TEST_F(ChecksumTest, DigestsAreLowerCaseHexadecimalTexts) {
    EXPECT_EQ(md5File(file("abc")), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(sha256File(file("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_F(ChecksumTest, TheAlgorithmIsChosenByItsName) {
    const auto path = file("abc");
    EXPECT_EQ(computeFileChecksum(path, "md5"), md5File(path));
    EXPECT_EQ(computeFileChecksum(path, "sha256"), sha256File(path));
}

TEST_F(ChecksumTest, AFileOfExactlyOneChunkIsReadWhole) {
    const auto path = file(contents(kMebibyte));
    EXPECT_EQ(md5File(path), "8f293a2f6c19b345152f7a49bb4c643c");
    EXPECT_EQ(sha256File(path), "631b84027d6b9e52b539c4e8373622d23032dfadc64d60af87339c9037e4f769");
}

TEST_F(ChecksumTest, AFileOfOneByteMoreThanAChunkIsReadWhole) {
    const auto path = file(contents(kMebibyte + 1));
    EXPECT_EQ(md5File(path), "79b67c7fbf43b76e5b7f182328bdc4b6");
    EXPECT_EQ(sha256File(path), "5769f52bc3eef28afa39c6fc68cadb7d0bd69812ae3a3d71452f519ec3c7aa56");
}

TEST_F(ChecksumTest, AFileOfManyChunksIsReadWhole) {
    const auto path = file(contents(5 * kMebibyte + 12345));
    EXPECT_EQ(md5File(path), "61da13b89f43d39dbdfc4f29d9908ff0");
    EXPECT_EQ(sha256File(path), "3f660807dc82f60fa210b4afecb7be450f4a100bc1694ff63254e315f266a2c8");
}

TEST_F(ChecksumTest, AShortReadIsNotTheEndOfTheFile) {
    // A pipe yields far less than a chunk at once.
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    // A reader that leaves too early fails the comparison, not the whole program.
    std::signal(SIGPIPE, SIG_IGN);
    std::thread writer([&pipe] { writeFile(pipe, contents(3 * kMebibyte)); });
    EXPECT_EQ(sha256File(pipe), "a1feacf0d812ba4d0b0e463ed45bbd583cea1de55c54693116754b30b5794745");
    writer.join();
}

TEST_F(ChecksumTest, AnotherSpellingOfAnAlgorithmYieldsTheEmptyText) {
    const auto path = file("abc");
    for (const char* name : {"MD5", "SHA256", "Sha256", "sha-256", "md-5", " md5", "md5 ", "sha1", ""}) {
        EXPECT_EQ(computeFileChecksum(path, name), "") << name;
    }
}

TEST_F(ChecksumTest, AnUnknownAlgorithmDoesNotTouchTheFile) {
    EXPECT_EQ(computeFileChecksum(folder.path(), "sha1"), "");
}

TEST_F(ChecksumTest, AMissingFileYieldsTheEmptyText) {
    EXPECT_EQ(md5File(folder.path() / "missing"), "");
    EXPECT_EQ(sha256File(folder.path() / "missing"), "");
}

TEST_F(ChecksumTest, WhatIsThereButCannotBeReadThrowsThePlatformsError) {
    const auto unreadable = folder.path() / "folder";
    std::filesystem::create_directory(unreadable);
    for (const char* algorithm : {"md5", "sha256"}) {
        try {
            computeFileChecksum(unreadable, algorithm);
            ADD_FAILURE() << algorithm << " digested a folder";
        } catch (const platform::Error& error) {
            EXPECT_EQ(error.localizedDescription(), unreadable.string() + ": Is a directory (EISDIR)");
        }
    }
}

TEST(HexEncodedStringTest, EachByteBecomesTwoLowerCaseDigitsTheHigherFirst) {
    EXPECT_EQ(hexEncodedString({}), "");
    EXPECT_EQ(hexEncodedString(bytes({0x00, 0x0A, 0xF0, 0x9C, 0xFF})), "000af09cff");
    EXPECT_EQ(hexEncodedString(bytes({0x00, 0x0A, 0xF0, 0x9C, 0xFF}), HexEncodingOptions()), "000af09cff");
}

TEST(HexEncodedStringTest, TheDigitsCanBeCapitals) {
    EXPECT_EQ(hexEncodedString(bytes({0x00, 0x0A, 0xF0, 0x9C, 0xFF}), {.upperCase = true}), "000AF09CFF");
}

// The XOR transform.

TEST(XorTransformTest, TheKeyRepeatsOverTheContent) {
    const XorResult result = transformed(bytes({0, 0, 0, 0, 0}), "0A0b");
    EXPECT_EQ(result.code, kXorSuccess);
    EXPECT_EQ(result.data, bytes({0x0A, 0x0B, 0x0A, 0x0B, 0x0A}));
    EXPECT_EQ(transformed(bytes({0, 1, 2, 3, 4}), "0A0b").data, bytes({0x0A, 0x0A, 0x08, 0x08, 0x0E}));
}

TEST(XorTransformTest, ContentOfTheKeysLengthMeetsEachKeyByteOnce) {
    const XorResult result = transformed(bytes({0xFF, 0x00, 0x0F}), "ff80F1");
    EXPECT_EQ(result.code, kXorSuccess);
    EXPECT_EQ(result.data, bytes({0x00, 0x80, 0xFE}));
}

TEST(XorTransformTest, AnOddNumberOfKeyCharactersIsCode1) {
    for (const char* key : {"0A0", "f", "zzz"}) {
        const XorResult result = transformed(bytes({1, 2, 3, 4}), key);
        EXPECT_EQ(result.code, 1) << key;
        EXPECT_EQ(result.data, std::nullopt) << key;
    }
}

TEST(XorTransformTest, ContentShorterThanTheKeyIsCode2) {
    const XorResult result = transformed(bytes({1, 2, 3}), "00112233");
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.data, std::nullopt);
}

TEST(XorTransformTest, AbsentContentCountsAsEmpty) {
    EXPECT_EQ(computeXOREncryption(std::nullopt, "00").code, 2);
    const XorResult result = computeXOREncryption(std::nullopt, "");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.data, Bytes());
}

TEST(XorTransformTest, AKeyThatIsNotHexadecimalIsCode3) {
    for (const char* key : {"zz", "0g", "g0", " 1", "1 ", "0x", "\xC3\xA9\xC3\xA9"}) {
        const XorResult result = transformed(bytes({1, 2, 3, 4}), key);
        EXPECT_EQ(result.code, 3) << key;
        EXPECT_EQ(result.data, std::nullopt) << key;
    }
    EXPECT_EQ(transformed(bytes({1, 2, 3, 4}), "00aa1z").code, 3);
}

TEST(XorTransformTest, TheCodesAreCheckedInTheirOrder) {
    // Odd and too long and not hexadecimal: 1 comes first. Too long and not hexadecimal: 2 does.
    EXPECT_EQ(transformed(bytes({1}), "zzzzz").code, 1);
    EXPECT_EQ(transformed(bytes({1}), "zzzz").code, 2);
}

TEST(XorTransformTest, KeyCharactersAreCountedNotTheirBytes) {
    // One character of two bytes and one of one byte: an even number, and no hexadecimal pair.
    EXPECT_EQ(transformed(bytes({1, 2, 3, 4}), "\xC3\xA9z").code, 3);
    // One character of two bytes: an odd number.
    EXPECT_EQ(transformed(bytes({1, 2, 3, 4}), "\xC3\xA9").code, 1);
}

TEST(XorTransformTest, ASignMayTakeThePlaceOfAPairsFirstDigit) {
    EXPECT_EQ(transformed(bytes({0, 0}), "+f+0").data, bytes({0x0F, 0x00}));
    EXPECT_EQ(transformed(bytes({0x55}), "-0").data, bytes({0x55}));
}

TEST(XorTransformTest, ASignThatMakesNoByteIsCode3) {
    for (const char* key : {"-1", "-f", "f+", "0-", "++", "--", "+-", "+g"}) {
        EXPECT_EQ(transformed(bytes({0}), key).code, 3) << key;
    }
}

TEST(XorTransformTest, AnEmptyKeyLeavesEmptyContentEmpty) {
    const XorResult result = transformed({}, "");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.data, Bytes());
}

TEST(XorTransformTest, TwiceTheSameKeyRestoresTheContent) {
    const std::string original = contents(100003);
    for (const char* key : {"5a", "0102030405060708090a0b", "d41d8cd98f00b204e9800998ecf8427e"}) {
        const XorResult once = computeXOREncryption(bytesOf(original), key);
        ASSERT_EQ(once.code, 0);
        EXPECT_NE(textOf(*once.data), original) << key;
        EXPECT_EQ(textOf(*transformed(*once.data, key).data), original) << key;
    }
}

TEST(XorTransformTest, EachPositionMeetsItsKeyByteWhateverTheKeysLength) {
    // Lengths around and past what one pass over the content takes at once.
    for (const std::size_t keyLength : {1U, 3U, 7U, 2047U, 5000U, 16383U, 16384U, 16385U, 40000U}) {
        Bytes key;
        for (std::size_t index = 0; index < keyLength; ++index) {
            key.push_back(static_cast<std::byte>(index * 7 + index / 256));
        }
        const std::string original = contents(100003);
        Bytes expected;
        for (std::size_t index = 0; index < original.size(); ++index) {
            expected.push_back(static_cast<std::byte>(original[index]) ^ key[index % keyLength]);
        }
        const XorResult result = computeXOREncryption(bytesOf(original), hexEncodedString(key));
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(result.data == expected) << "key of " << keyLength << " bytes";
    }
}

using XorTransformDeathTest = test::DeathTest;

TEST_F(XorTransformDeathTest, AnEmptyKeyForContentIsInvalidInput) {
    EXPECT_DEATH(transformed(bytes({1}), ""),
                 "invalid input: content cannot be deciphered with an empty key");
}

} // namespace
} // namespace orvane
