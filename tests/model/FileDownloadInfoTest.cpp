#include "model/FileDownloadInfo.h"

#include "platform/Error.h"
#include "platform/Utf8.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

/// A whole description, but for what a test puts in the place of one line or of `Size`'s value.
std::string document(const std::string& size = "48211968", const std::string& extra = "") {
    return R"({
      "URL": "https://downloads.example/varlen/setup/Varlen-setup",
      "Checksum": "3f2a",
      "ChecksumAlgorithm": "sha256",
      "EncryptedFileChecksum": "9b8a",
      "EncryptionAlgorithm": "xor",
      "Size": )" +
           size + extra + R"(,
      "Version": "14.2.7"
    })";
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    return text.replace(text.find(what), what.size(), by);
}

FileDownloadInfo decoded(const std::string& text) { return decodeFileDownloadInfo(bytesOf(text)); }

/// Why a document was refused; empty when it was not.
std::string refusal(const std::string& text) {
    try {
        decoded(text);
        return {};
    } catch (const platform::Error& error) {
        return error.localizedDescription();
    }
}

TEST(FileDownloadInfoTest, AWholeDescriptionDecodes) {
    const FileDownloadInfo expected{.URL = "https://downloads.example/varlen/setup/Varlen-setup",
                                    .Checksum = "3f2a",
                                    .ChecksumAlgorithm = "sha256",
                                    .EncryptedFileChecksum = "9b8a",
                                    .EncryptionAlgorithm = "xor",
                                    .Size = 48211968,
                                    .Version = "14.2.7"};
    EXPECT_EQ(decoded(document()), expected);
}

TEST(FileDownloadInfoTest, OtherKeysAreIgnored) {
    EXPECT_EQ(decoded(document("1", R"(, "Signature": "x", "size": "y", "Mirrors": [{"URL": null}])")),
              decoded(document("1")));
}

TEST(FileDownloadInfoTest, OtherKeysAreSkippedWhateverTheyHold) {
    const std::string deep(1'000'000, '[');
    for (const std::string& value :
         {std::string("1e999"), std::string("-1E-999"), std::string(400, '7'), "0." + std::string(400, '7'),
          deep + std::string(deep.size(), ']'), std::string(R"("\ud83d\ude00 \n")"),
          '"' + std::string(1'000'000, 'x') + '"',
          std::string(R"({"URL": 1, "a": [true, {"": [null, {}, []]}], "Size": false})")}) {
        EXPECT_EQ(decoded(document("1", ", \"Other\": " + value)), decoded(document("1")))
            << value.substr(0, 50);
    }
    EXPECT_EQ(decoded(document("1", ", \"" + std::string(1'000'000, 'k') + "\": 1")), decoded(document("1")));
}

TEST(FileDownloadInfoTest, OfTwoValuesUnderOneKeyTheLastCounts) {
    EXPECT_EQ(decoded(document("1", R"(, "Size": 2)")).Size, 2);
    EXPECT_EQ(decoded(document("[]", R"(, "Size": 2)")).Size, 2);
    EXPECT_EQ(refusal(document("1", R"(, "Size": null)")),
              "The value of Size is not a whole number of 64 bits");
}

TEST(FileDownloadInfoTest, AKeyMayBeWrittenWithEscapes) {
    EXPECT_EQ(decoded(replaced(document(), "\"Version\"", R"("\u0056ersio\u006E")")), decoded(document()));
}

TEST(FileDownloadInfoTest, TheEmptyCipherDecodes) {
    EXPECT_EQ(decoded(replaced(document(), R"("xor")", R"("")")).EncryptionAlgorithm, "");
}

TEST(FileDownloadInfoTest, EscapedAndForeignCharactersDecode) {
    EXPECT_EQ(decoded(replaced(document(), "14.2.7", "14 \\u00e9 \\\" é")).Version, "14 é \" é");
}

TEST(FileDownloadInfoTest, EachKeyIsRequiredUnderItsExactName) {
    const std::vector<std::string> keys{
        "URL",  "Checksum", "ChecksumAlgorithm", "EncryptedFileChecksum", "EncryptionAlgorithm",
        "Size", "Version"};
    for (const std::string& key : keys) {
        const std::string text = replaced(document(), '"' + key + '"', '"' + key + "x\"");
        EXPECT_EQ(refusal(text), "The key " + key + " is missing");
    }
    EXPECT_EQ(refusal(replaced(document(), "\"Version\"", "\"version\"")), "The key Version is missing");
}

TEST(FileDownloadInfoTest, ATextMustBeAText) {
    for (const char* value : {"14", "null", "true", "[]", "{}", "14.2"}) {
        EXPECT_EQ(refusal(replaced(document(), R"("14.2.7")", value)), "The value of Version is not a text")
            << value;
    }
    EXPECT_EQ(refusal(replaced(document(), R"("3f2a")", "3")), "The value of Checksum is not a text");
}

TEST(FileDownloadInfoTest, TheSizeMustBeAWholeNumber) {
    for (const char* value : {R"("123")", "12.5", "12.0", "1e3", "null", "true", "[1]", "9223372036854775808",
                              "-9223372036854775809", "100000000000000000000", "1e400"}) {
        EXPECT_EQ(refusal(document(value)), "The value of Size is not a whole number of 64 bits") << value;
    }
}

TEST(FileDownloadInfoTest, TheSizeHas64SignedBits) {
    EXPECT_EQ(decoded(document("0")).Size, 0);
    EXPECT_EQ(decoded(document("-1")).Size, -1);
    EXPECT_EQ(decoded(document("9223372036854775807")).Size, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decoded(document("-9223372036854775808")).Size, std::numeric_limits<std::int64_t>::min());
}

TEST(FileDownloadInfoTest, WhatIsNotJsonIsRefused) {
    const std::vector<std::string> texts{"", "<html>Not Found</html>", "{'URL': 'x'}", document() + "x",
                                         document().substr(0, 100)};
    for (const std::string& text : texts) {
        EXPECT_TRUE(refusal(text).starts_with("The document is not valid JSON: ")) << text;
    }
}

TEST(FileDownloadInfoTest, ARefusalSaysAtWhichByteTheDocumentBreaksOff) {
    EXPECT_EQ(refusal("<html>"), "The document is not valid JSON: a syntax error at byte 1");
    EXPECT_EQ(refusal(R"({"URL": x})"), "The document is not valid JSON: a syntax error at byte 9");
    EXPECT_EQ(refusal(document().substr(0, 100)),
              "The document is not valid JSON: a syntax error at byte 101");
    EXPECT_EQ(refusal(replaced(document(), "14.2.7", "14\xFF")),
              "The document is not valid JSON: no UTF-8 at byte " +
                  std::to_string(document().find("14.2.7") + 3));
}

TEST(FileDownloadInfoTest, ARefusalQuotesNothingOfTheDocumentSoNoCharacterIsCutInTwo) {
    for (const char* text : {"é", "{é", R"({"URL": é})", "{\"URL\": \"\n😀\"}", R"({"URL": "\é"})"}) {
        EXPECT_TRUE(isValidUtf8(refusal(text))) << text;
        EXPECT_TRUE(refusal(text).starts_with("The document is not valid JSON: ")) << text;
    }
}

TEST(FileDownloadInfoTest, ANulEndsNoDocument) {
    const std::string nul(1, '\0');
    EXPECT_TRUE(refusal(document() + nul).starts_with("The document is not valid JSON: a NUL at byte "));
    EXPECT_EQ(refusal(nul + document()), "The document is not valid JSON: a NUL at byte 1");
    EXPECT_NE(refusal(document() + nul + "anything"), "");
    EXPECT_NE(refusal(replaced(document(), "14.2.7", nul)), "");
}

TEST(FileDownloadInfoTest, WhatIsNotUtf8IsRefused) {
    EXPECT_TRUE(
        refusal(replaced(document(), "14.2.7", "14\xFF")).starts_with("The document is not valid JSON: "));
}

TEST(FileDownloadInfoTest, AnotherJsonValueThanAnObjectIsRefused) {
    for (const char* text : {"[]", "null", "\"URL\"", "7"}) {
        EXPECT_EQ(refusal(text), "The document is not a JSON object") << text;
    }
}

TEST(FileDownloadInfoTest, EachKnownCipherHasItsSuffix) {
    EXPECT_EQ(encryptedFileSuffix("xor"), ".enc");
    EXPECT_EQ(encryptedFileSuffix("pkg"), ".pkg");
}

TEST(FileDownloadInfoTest, AnUnknownCipherHasABarePointAsItsSuffix) {
    for (const char* algorithm : {"", "XOR", "Pkg", "aes"}) {
        EXPECT_EQ(encryptedFileSuffix(algorithm), ".") << algorithm;
    }
}

} // namespace
} // namespace orvane
