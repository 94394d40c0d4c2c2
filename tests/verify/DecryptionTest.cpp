#include "verify/Crypto.h"

#include "model/FileDownloadInfo.h"
#include "platform/Error.h"
#include "tests/support/DeathTest.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <sys/stat.h>

namespace orvane {
namespace {

using test::contentsOf;
using test::EnvironmentVariable;
using test::TemporaryFolder;
using test::writeFile;

// Enciphered files.

FileDownloadInfo engineDescribedBy(const std::string& checksum, std::int64_t size) {
    FileDownloadInfo info;
    info.Checksum = checksum;
    info.Size = size;
    return info;
}

class DecryptXorFileTest : public testing::Test {
protected:
    int decrypt(const std::string& enciphered, std::int64_t size, const std::string& key = "0A0b") const {
        writeFile(encFile, enciphered);
        return decryptXORFile(engineDescribedBy(key, size), plainFile, encFile);
    }

    TemporaryFolder folder;
    std::filesystem::path plainFile = folder.path() / "varlen-setup";
    std::filesystem::path encFile = folder.path() / "varlen-setup.enc";
};

TEST_F(DecryptXorFileTest, ANewEngineFileHoldsTheDecipheredBytes) {
    EXPECT_EQ(decrypt("abcde", 5), 0);
    EXPECT_EQ(contentsOf(plainFile), "kiioo");
}

TEST_F(DecryptXorFileTest, TheEncipheredFileStays) {
    EXPECT_EQ(decrypt("abcde", 5), 0);
    EXPECT_EQ(contentsOf(encFile), "abcde");
}

TEST_F(DecryptXorFileTest, ANewEngineFileIsNotExecutable) {
    ASSERT_EQ(decrypt("abcde", 5), 0);
    struct stat status {};
    ASSERT_EQ(stat(plainFile.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0111U, 0U);
}

TEST_F(DecryptXorFileTest, AShorterEngineFileIsWrittenOver) {
    writeFile(plainFile, "o");
    EXPECT_EQ(decrypt("    ", 4, "41"), 0);
    EXPECT_EQ(contentsOf(plainFile), "aaaa");
}

TEST_F(DecryptXorFileTest, ALongerEngineFileKeepsItsTail) {
    writeFile(plainFile, "0123456789");
    EXPECT_EQ(decrypt("    ", 4, "41"), 0);
    EXPECT_EQ(contentsOf(plainFile), "aaaa456789");
}

TEST_F(DecryptXorFileTest, AnExistingEngineFileKeepsItsPermissions) {
    writeFile(plainFile, "old");
    ASSERT_EQ(chmod(plainFile.c_str(), 0744), 0);
    EXPECT_EQ(decrypt("    ", 4, "41"), 0);
    struct stat status {};
    ASSERT_EQ(stat(plainFile.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0744U);
}

TEST_F(DecryptXorFileTest, OnlyTheDescribedNumberOfBytesIsDeciphered) {
    EXPECT_EQ(decrypt("      ", 4, "41"), 0);
    EXPECT_EQ(contentsOf(plainFile), "aaaa");
}

TEST_F(DecryptXorFileTest, AFileShorterThanDescribedIsDecipheredAsFarAsItGoes) {
    EXPECT_EQ(decrypt("    ", 1000, "41"), 0);
    EXPECT_EQ(contentsOf(plainFile), "aaaa");
}

TEST_F(DecryptXorFileTest, AHugeDescribedSizeNeedsNoMemoryForIt) {
    EXPECT_EQ(decrypt("    ", std::numeric_limits<std::int64_t>::max(), "41"), 0);
    EXPECT_EQ(contentsOf(plainFile), "aaaa");
}

TEST_F(DecryptXorFileTest, ADescribedSizeBelowZeroLeavesNoContent) {
    EXPECT_EQ(decrypt("    ", -1, "41"), 2);
    EXPECT_FALSE(std::filesystem::exists(plainFile));
}

/// Large files are worked through in pieces of some MiB.
class DecryptLargeXorFileTest : public DecryptXorFileTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(DecryptLargeXorFileTest, TheKeyRepeatsWithoutABreakOverAllPieces) {
    std::string key;
    for (std::size_t index = 0; index < GetParam(); ++index) {
        const std::byte byte{static_cast<unsigned char>(index * 7 + 1)};
        key += hexEncodedString(ByteView(&byte, 1));
    }
    std::string content(3 * (std::size_t{1} << 20) + 12345, '\0');
    for (std::size_t index = 0; index < content.size(); ++index) {
        content[index] = static_cast<char>(index % 251);
    }
    ASSERT_EQ(decrypt(content, static_cast<std::int64_t>(content.size()), key), 0);
    EXPECT_TRUE(contentsOf(plainFile) == textOf(*computeXOREncryption(bytesOf(content), key).data));
}

INSTANTIATE_TEST_SUITE_P(KeyLengths, DecryptLargeXorFileTest, testing::Values(1, 16, 20, 33, 1'500'000));

TEST_F(DecryptXorFileTest, AKeyAsLongAsAContentOfSeveralPiecesIsLongEnough) {
    const std::string key(5'000'000, '4');
    EXPECT_EQ(decrypt(std::string(2'500'000, 'D'), 2'500'000, key), 0);
    EXPECT_TRUE(contentsOf(plainFile) == std::string(2'500'000, '\0'));
    EXPECT_EQ(decrypt(std::string(2'499'999, 'D'), 2'500'000, key), 2);
}

TEST_F(DecryptXorFileTest, AFailedTransformReturnsItsCodeAndWritesNothing) {
    EXPECT_EQ(decrypt("abcd", 4, "123"), 1);
    EXPECT_EQ(decrypt("abcd", 4, "0011223344"), 2);
    EXPECT_EQ(decrypt("abcd", 4, "zz"), 3);
    EXPECT_FALSE(std::filesystem::exists(plainFile));
    writeFile(plainFile, "old");
    EXPECT_EQ(decrypt("abcd", 4, "zz"), 3);
    EXPECT_EQ(contentsOf(plainFile), "old");
}

TEST_F(DecryptXorFileTest, AMissingEncipheredFileThrowsThePlatformsError) {
    try {
        decryptXORFile(engineDescribedBy("41", 1), plainFile, encFile);
        ADD_FAILURE() << "a missing file was deciphered";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.localizedDescription(), encFile.string() + ": No such file or directory (ENOENT)");
    }
}

TEST_F(DecryptXorFileTest, AnEngineFileThatCannotBeOpenedThrowsThePlatformsError) {
    std::filesystem::create_directory(plainFile);
    try {
        decrypt("    ", 4, "41");
        ADD_FAILURE() << "a folder was written over";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.localizedDescription(), plainFile.string() + ": Is a directory (EISDIR)");
    }
}

using DecryptXorFileDeathTest = test::DeathTest;

TEST_F(DecryptXorFileDeathTest, ANewEngineFileThatCannotBeWrittenIsAnUnexpectedError) {
    const TemporaryFolder folder;
    const auto encFile = folder.path() / "engine.enc";
    writeFile(encFile, "    ");
    EXPECT_DEATH(decryptXORFile(engineDescribedBy("41", 4), folder.path() / "missing" / "engine", encFile),
                 "unexpected error: OrvaneBootstrap/crypto line 181: "
                 ".*/missing/engine: No such file or directory .ENOENT.");
}

// Packages.

class DecryptPkgFileTest : public testing::Test {
protected:
    /// A stand-in for the system's package installer, first on the search path, which records its arguments.
    void provideInstaller(int status) const {
        const auto installer = folder.path() / "bin" / "installer";
        writeFile(installer, "#!/bin/sh\nfor argument; do echo \"$argument\"; done >" +
                                 (folder.path() / "arguments").string() + "\nexit " + std::to_string(status) +
                                 "\n");
        ASSERT_EQ(chmod(installer.c_str(), 0755), 0);
    }

    std::string searchPath(const std::string& rest) const { return (folder.path() / "bin").string() + rest; }

    TemporaryFolder folder;
    std::filesystem::path package = folder.path() / "varlen-setup.pkg";
};

TEST_F(DecryptPkgFileTest, TheInstallerIsRunWithItsFixedArguments) {
    provideInstaller(0);
    const EnvironmentVariable path("PATH", searchPath(":/usr/bin:/bin"));
    EXPECT_EQ(decryptPKGFile({}, package), 0);
    EXPECT_EQ(contentsOf(folder.path() / "arguments"),
              "-allowUntrusted\n-verboseR\n-pkg\n" + package.string() + "\n-target\n/\n");
}

TEST_F(DecryptPkgFileTest, TheInstallersStatusIsTheResult) {
    provideInstaller(77);
    const EnvironmentVariable path("PATH", searchPath(":/usr/bin:/bin"));
    EXPECT_EQ(decryptPKGFile({}, package), 77);
}

TEST_F(DecryptPkgFileTest, WithoutAnInstallerTheResultIsThatOfACommandNotFound) {
    const EnvironmentVariable path("PATH", searchPath(""));
    EXPECT_EQ(decryptPKGFile({}, package), 127);
}

TEST_F(DecryptPkgFileTest, NoFileIsWritten) {
    provideInstaller(0);
    const EnvironmentVariable path("PATH", searchPath(":/usr/bin:/bin"));
    ASSERT_EQ(decryptPKGFile({}, package), 0);
    EXPECT_FALSE(std::filesystem::exists(package));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "varlen-setup"));
}

} // namespace
} // namespace orvane
