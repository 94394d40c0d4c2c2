#include "tools/DescriptionChecks.h"

#include "tests/support/TemporaryFolder.h"
#include "verify/Crypto.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::tools {
namespace {

using test::writeFile;

const std::string kEngine = "#!/bin/sh\necho an engine long enough for its key\n";

Verdict verdictOf(const Findings& findings, const std::string& check) {
    const auto found = std::ranges::find(findings, check, &Finding::check);
    EXPECT_NE(found, findings.end()) << check;
    return found == findings.end() ? Verdict::failed : found->verdict;
}

bool allGood(const Findings& findings) {
    return std::ranges::all_of(findings,
                               [](const auto& finding) { return finding.verdict == Verdict::good; });
}

class DescriptionChecksTest : public testing::Test {
protected:
    DescriptionChecksTest() { describe("xor"); }

    /// The engine as the cipher has it transferred, and its description.
    void describe(const std::string& cipher) {
        writeFile(folder_.path() / "plain", kEngine);
        info_ = {.URL = "https://h.example/engine",
                 .Checksum = sha256File(folder_.path() / "plain"),
                 .ChecksumAlgorithm = "sha256",
                 .EncryptedFileChecksum = "",
                 .EncryptionAlgorithm = cipher,
                 .Size = static_cast<std::int64_t>(kEngine.size()),
                 .Version = "14.2.7"};
        transferred_ = kEngine;
        if (cipher == "xor") {
            transferred_ = std::string(textOf(*computeXOREncryption(bytesOf(kEngine), info_.Checksum).data));
        }
        transfer(transferred_);
    }

    /// With its right digest.
    void transfer(const std::string& bytes) {
        writeFile(file_, bytes);
        info_.EncryptedFileChecksum = sha256File(file_);
    }

    Verdict verdict(const std::string& check) const { return verdictOf(checkDescription(info_), check); }

    Verdict fileVerdict(const std::string& check) const {
        return verdictOf(checkTransferred(info_, file_, folder_.path()), check);
    }

    const test::TemporaryFolder folder_;
    const std::filesystem::path file_ = folder_.path() / "transferred";
    std::string transferred_;
    FileDownloadInfo info_;
};

TEST_F(DescriptionChecksTest, AGoodPublicationIsGoodThroughout) {
    for (const char* cipher : {"", "xor"}) {
        describe(cipher);
        EXPECT_TRUE(allGood(checkDescription(info_))) << cipher;
        EXPECT_TRUE(allGood(checkTransferred(info_, file_, folder_.path()))) << cipher;
    }
}

TEST_F(DescriptionChecksTest, AVersionNeedsAFirstComponentAndShouldBeNumbers) {
    info_.Version = "..";
    EXPECT_EQ(verdict("version"), Verdict::failed);
    EXPECT_EQ(acceptedMajorVersion(info_), std::nullopt);
    info_.Version = "14.2b";
    EXPECT_EQ(verdict("version"), Verdict::warning);
    EXPECT_EQ(acceptedMajorVersion(info_), "14");
}

TEST_F(DescriptionChecksTest, OnlyTwoAlgorithmsAreKnownInLowerCase) {
    for (const char* algorithm : {"SHA256", "sha-256", "sha512", ""}) {
        info_.ChecksumAlgorithm = algorithm;
        EXPECT_EQ(verdict("algorithm"), Verdict::failed) << algorithm;
    }
    info_.ChecksumAlgorithm = "md5";
    EXPECT_EQ(verdict("algorithm"), Verdict::warning);
}

TEST_F(DescriptionChecksTest, ADigestIsHexadecimalDigitsInLowerCaseOfItsLength) {
    const std::string right = info_.Checksum;
    for (const std::string& wrong : {std::string(64, 'A'), right.substr(1), right + "0", std::string()}) {
        info_.Checksum = wrong;
        EXPECT_EQ(verdict("digest"), Verdict::failed) << wrong;
        info_.Checksum = right;
        info_.EncryptedFileChecksum = wrong;
        EXPECT_EQ(verdict("transferred-digest"), Verdict::failed) << wrong;
    }
}

TEST_F(DescriptionChecksTest, APlainEnginesSecondDigestOnlyMisleadsReadersOfLogs) {
    describe("");
    info_.EncryptedFileChecksum = "another";
    EXPECT_EQ(verdict("transferred-digest"), Verdict::warning);
}

TEST_F(DescriptionChecksTest, OnlyThreeCiphersAreKnownInLowerCase) {
    info_.EncryptionAlgorithm = "XOR";
    EXPECT_EQ(verdict("cipher"), Verdict::failed);
    info_.EncryptionAlgorithm = "pkg";
    EXPECT_EQ(verdict("cipher"), Verdict::good);
}

TEST_F(DescriptionChecksTest, TheAddressIsAnHttpsUrlToWhichTheCiphersSuffixCanBeAppended) {
    EXPECT_EQ(transferredUrl(info_), "https://h.example/engine.enc");
    info_.URL = "https://h.example/an engine";
    EXPECT_EQ(verdict("address"), Verdict::failed);
    info_.URL = "http://h.example/engine";
    EXPECT_EQ(verdict("address"), Verdict::failed);
    info_.URL = "https://h.example/engine?version=14";
    EXPECT_EQ(verdict("address"), Verdict::warning);
    describe("");
    info_.URL = "https://h.example/engine?version=14";
    EXPECT_EQ(verdict("address"), Verdict::good);
}

TEST_F(DescriptionChecksTest, AnXorEngineIsAtLeastAsLongAsItsKey) {
    info_.Size = 32;
    EXPECT_EQ(verdict("size"), Verdict::good);
    info_.Size = 31;
    EXPECT_EQ(verdict("size"), Verdict::failed);
    describe("");
    info_.Size = 31;
    EXPECT_EQ(verdict("size"), Verdict::good);
    info_.Size = 0;
    EXPECT_EQ(verdict("size"), Verdict::warning);
}

TEST_F(DescriptionChecksTest, AnotherFileThanTheDescribedOneIsRefusedAndAPageRecognised) {
    writeFile(file_, "<html>not found</html>");
    const Findings findings = checkTransferred(info_, file_, folder_.path());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].verdict, Verdict::failed);
    EXPECT_TRUE(findings[0].text.ends_with("; the file looks like a page")) << findings[0].text;
}

TEST_F(DescriptionChecksTest, AFileThatDeciphersToAnotherEngineIsRefused) {
    transfer(std::string(kEngine.size(), 'x'));
    EXPECT_EQ(fileVerdict("transferred"), Verdict::good);
    EXPECT_EQ(fileVerdict("deciphered"), Verdict::failed);
}

TEST_F(DescriptionChecksTest, ASizeBelowTheFilesCutsTheDecipheredEngine) {
    --info_.Size;
    EXPECT_EQ(fileVerdict("deciphered"), Verdict::failed);
}

TEST_F(DescriptionChecksTest, ASizeAboveTheFilesChangesNothingButIsWrong) {
    ++info_.Size;
    EXPECT_EQ(fileVerdict("deciphered"), Verdict::good);
    EXPECT_EQ(fileVerdict("length"), Verdict::warning);
}

TEST_F(DescriptionChecksTest, AnEngineThatIsNotAProgramForTheSystemFails) {
    describe("");
    transfer("a text");
    info_.Checksum = info_.EncryptedFileChecksum;
    EXPECT_EQ(fileVerdict("program"), Verdict::failed);
    transfer(std::string("\xCF\xFA\xED\xFE\x0C\0\0\1\0\0\0\0\2\0\0\0", 16));
    info_.Checksum = info_.EncryptedFileChecksum;
    EXPECT_EQ(fileVerdict("program"), Verdict::good);
    EXPECT_EQ(checkTransferred(info_, file_, folder_.path(), "linux-amd64").back(),
              (Finding{"program", Verdict::failed,
                       "the engine is a macOS program for arm64, not for linux-amd64"}));
    EXPECT_EQ(checkTransferred(info_, file_, folder_.path(), "macos").back().verdict, Verdict::good);
}

TEST_F(DescriptionChecksTest, WhatAPackageInstallsIsNotKnown) {
    describe("pkg");
    transfer("xar!");
    EXPECT_EQ(fileVerdict("transferred"), Verdict::good);
    EXPECT_EQ(fileVerdict("package"), Verdict::warning);
    EXPECT_EQ(checkTransferred(info_, file_, folder_.path(), "linux-amd64").back().verdict, Verdict::failed);
    transfer("a text");
    EXPECT_EQ(fileVerdict("package"), Verdict::failed);
}

} // namespace
} // namespace orvane::tools
