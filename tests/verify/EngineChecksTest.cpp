#include "platform/Error.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/RunTest.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

constexpr char kMd5OfAbc[] = "900150983cd24fb0d6963f7d28e17f72";
constexpr char kMd5OfXyz[] = "d16fb36f0911f878998c136191af705e";

unsigned permissionsOf(const std::filesystem::path& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

class EngineChecksTest : public RunTest {
protected:
    EngineChecksTest() {
        info.ChecksumAlgorithm = "md5";
        info.Checksum = kMd5OfAbc;
        info.EncryptedFileChecksum = kMd5OfXyz;
        info.Version = "14.2.7";
        describe();
    }

    void describe() { controller->orvaneDownloadInfo.store(info); }

    void describeVersion(const std::string& version) {
        info.Version = version;
        describe();
    }

    /// An engine that does what this shell script says, and is executable.
    void installScript(const std::string& script) const {
        writeFile(deployment.engine(), "#!/bin/sh\n" + script + "\n");
        ASSERT_EQ(chmod(deployment.engine().c_str(), 0755), 0);
    }

    /// The lines of a checksum test on a file whose digest is `local`.
    Lines checksumLines(const std::string& kind, const std::string& local) const {
        return {"Checking if orvane checksums match", kind + " orvane local checksum is " + local +
                                                          ", remote checksum is" +
                                                          info.EncryptedFileChecksum};
    }

    FileDownloadInfo info;
};

// Major versions. The program's own version is 14.0.0.

class MajorVersionTest : public EngineChecksTest {};

TEST_F(MajorVersionTest, EqualFirstComponentsMatch) {
    for (const char* version : {"14.0.0", "14.9", "14", ".14.1"}) {
        describeVersion(version);
        EXPECT_TRUE(controller->orvaneMajorVersionMatches()) << version;
    }
}

TEST_F(MajorVersionTest, OtherFirstComponentsDoNotMatchWhateverTheirValue) {
    for (const char* version : {"13.0.0", "15.0", "140.1", "1.14", "014.1", "14a.1"}) {
        describeVersion(version);
        EXPECT_FALSE(controller->orvaneMajorVersionMatches()) << version;
    }
}

TEST_F(MajorVersionTest, BothAreLogged) {
    describeVersion("15.1");
    controller->orvaneMajorVersionMatches();
    EXPECT_EQ(logLines(), (Lines{"Checking if major versions match",
                                 "bootstrapper major version is 14 and orvane major version is 15"}));
}

TEST_F(MajorVersionTest, WithoutALogTheAnswerIsTheSame) {
    withoutLog();
    CaptureStandardOutput output;
    EXPECT_TRUE(controller->orvaneMajorVersionMatches());
    describeVersion("15");
    EXPECT_FALSE(controller->orvaneMajorVersionMatches());
    EXPECT_EQ(output.finish(), "");
}

TEST_F(MajorVersionTest, ADescribedVersionWithoutAComponentIsInvalidInput) {
    describeVersion("");
    EXPECT_DEATH(controller->orvaneMajorVersionMatches(), "a version has no first component: \"\"");
}

TEST_F(MajorVersionTest, AMissingDescriptionIsAProgrammingError) {
    controller->orvaneDownloadInfo.store(std::nullopt);
    EXPECT_DEATH(controller->orvaneMajorVersionMatches(),
                 "the engine's description is needed before it was fetched");
}

// The installed engine's version.

class CurrentVersionTest : public EngineChecksTest {};

TEST_F(CurrentVersionTest, ItIsWhatTheEnginePrintsWithoutTheLineFeed) {
    installScript("echo 2.20.7");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "2.20.7");
    EXPECT_EQ(logLines(), Lines{"Spawning orvane with args --version"});
}

TEST_F(CurrentVersionTest, LineFeedsGoFromBothEndsAndNothingElseGoes) {
    installScript(R"(printf '\n\n 2.20.7\n beta \t\n\n')");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), " 2.20.7\n beta \t");
}

TEST_F(CurrentVersionTest, ACarriageReturnStays) {
    installScript(R"(printf '2.20.7\r\n')");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "2.20.7\r");
}

TEST_F(CurrentVersionTest, LineFeedsAloneOrNothingAreTheEmptyVersion) {
    installScript(R"(printf '\n\n')");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "");
    installScript(":");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "");
}

TEST_F(CurrentVersionTest, TheEngineIsAskedWithOneArgument) {
    installScript(R"(echo "$# $1")");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "1 --version");
}

TEST_F(CurrentVersionTest, TheEnginesStatusAndStandardErrorDoNotMatter) {
    installScript("echo 2.0; echo warning >&2; exit 3");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "2.0");
}

TEST_F(CurrentVersionTest, TheOutputIsReadToItsEnd) {
    // By two processes, one of which outlives the other.
    installScript("head -c 65535 /dev/zero | tr '\\0' 1; exec printf 2");
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), std::string(65535, '1') + "2");
}

TEST_F(CurrentVersionTest, MoreThan64KibibytesAreNoVersion) {
    installScript("head -c 65537 /dev/zero | tr '\\0' 1");
    try {
        controller->getCurrentOrvaneVersion();
        ADD_FAILURE() << "65537 bytes were taken for a version";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.localizedDescription(), "cannot retrieve process stdout");
    }
}

TEST_F(CurrentVersionTest, AnEngineWithoutItsPermissionGets0744AndIsAsked) {
    installScript("echo 2.0");
    ASSERT_EQ(chmod(deployment.engine().c_str(), 0640), 0);
    EXPECT_EQ(controller->getCurrentOrvaneVersion(), "2.0");
    EXPECT_EQ(permissionsOf(deployment.engine()), 0744U);
}

TEST_F(CurrentVersionTest, AnExecutableEngineKeepsItsPermissions) {
    installScript("echo 2.0");
    controller->getCurrentOrvaneVersion();
    EXPECT_EQ(permissionsOf(deployment.engine()), 0755U);
}

TEST_F(CurrentVersionTest, OutputThatIsNotUtf8Throws) {
    installScript(R"(printf '2.0\377\n')");
    try {
        controller->getCurrentOrvaneVersion();
        ADD_FAILURE() << "output that is no text was taken for a version";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.domain(), "");
        EXPECT_EQ(error.code(), 1);
        EXPECT_EQ(error.localizedDescription(), "cannot retrieve process stdout");
    }
}

TEST_F(CurrentVersionTest, AMissingEngineThrowsThePlatformsError) {
    try {
        controller->getCurrentOrvaneVersion();
        ADD_FAILURE() << "a missing engine has a version";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.localizedDescription(),
                  deployment.engine().string() + ": No such file or directory (ENOENT)");
    }
}

TEST_F(CurrentVersionTest, AnEngineThatCannotBeStartedIsInvalidInput) {
    writeFile(deployment.engine(), "no program");
    ASSERT_EQ(chmod(deployment.engine().c_str(), 0755), 0);
    EXPECT_DEATH(
        controller->getCurrentOrvaneVersion(),
        "the engine could not be asked for its version: .*varlen-setup: Exec format error .ENOEXEC.");
}

TEST_F(CurrentVersionTest, AMissingLocationIsAProgrammingError) {
    controller->orvaneExeUrl.store(std::nullopt);
    EXPECT_DEATH(controller->getCurrentOrvaneVersion(),
                 "the engine's location is needed before it was built");
}

// Good enough?

class VersionsMatchTest : public EngineChecksTest {
protected:
    bool match(const std::string& installed, const std::string& described) {
        installScript("echo " + installed);
        describeVersion(described);
        return controller->orvaneVersionsMatch();
    }
};

TEST_F(VersionsMatchTest, TheSameVersionIsGoodEnough) { EXPECT_TRUE(match("2.20.7", "2.20.7")); }

TEST_F(VersionsMatchTest, ANewerVersionIsGoodEnough) {
    EXPECT_TRUE(match("2.21", "2.20.7"));
    EXPECT_TRUE(match("2.20.10", "2.20.9"));
}

TEST_F(VersionsMatchTest, AnOlderVersionIsNot) {
    EXPECT_FALSE(match("2.20.6", "2.20.7"));
    EXPECT_FALSE(match("2.20", "2.20.1"));
}

TEST_F(VersionsMatchTest, WhatIsComparedIsLogged) {
    match("2.20.6", "2.20.7");
    EXPECT_EQ(logLines(), (Lines{"Checking if orvane versions match", "Spawning orvane with args --version",
                                 "remote version is 2.20.7 and local is 2.20.6"}));
}

TEST_F(VersionsMatchTest, AMissingEngineDoesNotMatchAndTheRunGoesOn) {
    EXPECT_FALSE(controller->orvaneVersionsMatch());
    EXPECT_EQ(logLines(), (Lines{"Checking if orvane versions match", "Spawning orvane with args --version",
                                 "Unable to retrieve file version: " + deployment.engine().string() +
                                     ": No such file or directory (ENOENT)"}));
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
}

TEST_F(VersionsMatchTest, OutputThatIsNotUtf8DoesNotMatch) {
    installScript(R"(printf '99\377\n')");
    EXPECT_FALSE(controller->orvaneVersionsMatch());
    EXPECT_EQ(logLines().back(), "Unable to retrieve file version: cannot retrieve process stdout");
}

TEST_F(VersionsMatchTest, WithoutALogTheAnswersAreTheSame) {
    withoutLog();
    CaptureStandardOutput output;
    EXPECT_TRUE(match("2.0", "2.0"));
    EXPECT_FALSE(match("1.0", "2.0"));
    std::filesystem::remove(deployment.engine());
    EXPECT_FALSE(controller->orvaneVersionsMatch());
    EXPECT_EQ(output.finish(), "");
}

TEST_F(VersionsMatchTest, AMissingDescriptionIsAProgrammingError) {
    installScript("echo 2.0");
    controller->orvaneDownloadInfo.store(std::nullopt);
    EXPECT_DEATH(controller->orvaneVersionsMatch(),
                 "the engine's description is needed before it was fetched");
}

// Digests.

class ChecksumsMatchTest : public EngineChecksTest {
protected:
    void describeEnciphered(const std::string& algorithm) {
        controller->isOrvaneEncrypted = true;
        info.EncryptionAlgorithm = algorithm;
        describe();
    }
};

TEST_F(ChecksumsMatchTest, APlainEngineIsComparedWithItsOwnDigest) {
    writeFile(deployment.engine(), "abc");
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
    writeFile(deployment.engine(), "xyz");
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, ThePlainEnginesLogLineShowsTheEncipheredDigestAllTheSame) {
    writeFile(deployment.engine(), "abc");
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
    EXPECT_EQ(logLines(), checksumLines("decrypted", kMd5OfAbc));
}

TEST_F(ChecksumsMatchTest, Sha256IsTheOtherAlgorithm) {
    writeFile(deployment.engine(), "abc");
    info.ChecksumAlgorithm = "sha256";
    info.Checksum = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
    describe();
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, ADescribedDigestInCapitalsNeverMatches) {
    writeFile(deployment.engine(), "abc");
    info.Checksum = "900150983CD24FB0D6963F7D28E17F72";
    describe();
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, AMissingEngineHasNoDigest) {
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    EXPECT_EQ(logLines(), checksumLines("decrypted", ""));
    info.Checksum = "";
    describe();
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, AnUnknownAlgorithmHasNoDigest) {
    writeFile(deployment.engine(), "abc");
    info.ChecksumAlgorithm = "MD5";
    describe();
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    info.Checksum = "";
    describe();
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, AnEncipheredDownloadIsLookedForBesideTheEngineByItsCipher) {
    for (const auto& [algorithm, suffix] : std::vector<std::pair<std::string, std::string>>{
             {"xor", ".enc"}, {"pkg", ".pkg"}, {"XOR", "."}, {"", "."}}) {
        describeEnciphered(algorithm);
        const DescribedEngine engine{.location = deployment.engine(), .info = info, .isEncrypted = true};
        EXPECT_EQ(engine.downloadLocation(), deployment.engine().string() + suffix);
        EXPECT_FALSE(controller->orvaneChecksumsMatch()) << algorithm << ": the file is not there yet";
        writeFile(deployment.engine().string() + suffix, "xyz");
        EXPECT_TRUE(controller->orvaneChecksumsMatch()) << algorithm;
        std::filesystem::remove(deployment.engine().string() + suffix);
    }
}

TEST_F(ChecksumsMatchTest, AnEncipheredDownloadIsComparedWithTheEncipheredDigest) {
    describeEnciphered("xor");
    writeFile(deployment.engine(), "abc");
    writeFile(deployment.engine().string() + ".enc", "xyz");
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
    EXPECT_EQ(logLines(), checksumLines("encrypted", kMd5OfXyz));
    writeFile(deployment.engine().string() + ".enc", "abc");
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
}

TEST_F(ChecksumsMatchTest, AnEncipheredDownloadsPathMustBeAUrl) {
    describeEnciphered("xor");
    controller->orvaneExeUrl.store("/opt/two words/varlen-setup");
    EXPECT_DEATH(controller->orvaneChecksumsMatch(),
                 "the enciphered engine's location is not a URL: /opt/two words/varlen-setup.enc");
}

TEST_F(ChecksumsMatchTest, AnUnreadableEngineEndsTheInstallation) {
    std::filesystem::create_directories(deployment.engine());
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    EXPECT_EQ(logLines(), (Lines{"Checking if orvane checksums match",
                                 "Unable to compute file checksum: " + deployment.engine().string() +
                                     ": Is a directory (EISDIR)"}));
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
    expectFatalError(kInstallationFailed);
}

TEST_F(ChecksumsMatchTest, AnUnreadableEngineEndsTheUninstallation) {
    controller->uninstall = true;
    std::filesystem::create_directories(deployment.engine());
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    expectFatalError(kUninstallationFailed);
}

TEST_F(ChecksumsMatchTest, WithoutALogTheAnswersAreTheSame) {
    withoutLog();
    CaptureStandardOutput output;
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    writeFile(deployment.engine(), "abc");
    EXPECT_TRUE(controller->orvaneChecksumsMatch());
    std::filesystem::remove(deployment.engine());
    std::filesystem::create_directories(deployment.engine());
    EXPECT_FALSE(controller->orvaneChecksumsMatch());
    expectFatalError(kInstallationFailed);
    EXPECT_EQ(output.finish(), "");
    EXPECT_EQ(server.requestLines(), Lines{});
}

TEST_F(ChecksumsMatchTest, AMissingDescriptionOrLocationIsAProgrammingError) {
    controller->orvaneExeUrl.store(std::nullopt);
    EXPECT_DEATH(controller->orvaneChecksumsMatch(), "the engine's location is needed before it was built");
    controller->orvaneDownloadInfo.store(std::nullopt);
    EXPECT_DEATH(controller->orvaneChecksumsMatch(),
                 "the engine's description is needed before it was fetched");
}

} // namespace
} // namespace orvane::test
