#include "tests/download/EngineDownloadFixture.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

constexpr char kPackage[] = "a package";

// Plain downloads.

TEST_F(EngineDownloadTest, APlainEngineIsVerifiedAndHandedOver) {
    server.answer(kPath, response(kEngine));
    start();
    awaitHandOver();
    EXPECT_EQ(engineAtHandOver, kEngine);
    EXPECT_EQ(server.requestLines(), Lines{"GET /varlen/setup/Varlen-setup"});
    EXPECT_EQ(logLines(), arrivedAnd("decrypted", info.Checksum, {"Orvane is not encrypted"}));
}

TEST_F(EngineDownloadTest, TheBarFollowsTheTransferAndReachesExactly100) {
    const Gate mayGoOn;
    const std::string body(400, 'e');
    info.Checksum = md5Of(body);
    describe();
    server.answer(kPath, [mayGoOn, body](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 400\r\n\r\n" + body.substr(0, 50));
        EXPECT_TRUE(mayGoOn.wait());
        connection.send(body.substr(50));
    });
    start();
    desktop.runMainQueueUntil([this] { return !journal().empty(); });
    EXPECT_EQ(journal(), Lines{"progressBar value 12.5"});
    mayGoOn.open();
    awaitHandOver();
    EXPECT_EQ(journal().back(), "progressBar value 100");
}

TEST_F(EngineDownloadTest, WithoutAnAnnouncedLengthTheBarIsGivenNegativeValues) {
    server.answer(kPath, std::string("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n") + kEngine);
    start();
    awaitHandOver();
    EXPECT_EQ(journal().back(), "progressBar value -" + std::to_string(info.Size * 100));
}

TEST_F(EngineDownloadTest, ItReturnsWhileTheTransferRunsAndTheTaskIsKept) {
    const Gate mayAnswer;
    server.answer(kPath, [mayAnswer](LoopbackConnection& connection) {
        EXPECT_TRUE(mayAnswer.wait());
        connection.send(response(kEngine));
    });
    start();
    EXPECT_NE(controller->orvaneDownloadTask.load(), nullptr);
    EXPECT_EQ(handOvers, 0);
    mayAnswer.open();
    awaitHandOver();
}

TEST_F(EngineDownloadTest, AnOlderEngineIsReplacedWhole) {
    writeFile(deployment.engine(), std::string(1000, 'o'));
    server.answer(kPath, response(kEngine));
    start();
    awaitHandOver();
    EXPECT_EQ(engineAtHandOver, kEngine);
}

TEST_F(EngineDownloadTest, ThePathOfAPlainEngineNeedNotBeAUrl) {
    const auto engine = deployment.folder() / "two words" / "varlen-setup";
    controller->orvaneExeUrl.store(engine);
    server.answer(kPath, response(kEngine));
    controller->downloadOrvane([this] { ++handOvers; });
    awaitHandOver();
    EXPECT_EQ(contentsOf(engine), kEngine);
}

TEST_F(EngineDownloadTest, ADescribedAddressThatIsNoUrlIsInvalidInput) {
    info.URL = "https://downloads.example/two words";
    describe();
    EXPECT_DEATH(start(), "the engine's address is not a URL: https://downloads.example/two words");
    info.URL = "";
    describe();
    EXPECT_DEATH(start(), "the engine's address is not a URL: ");
}

TEST_F(EngineDownloadTest, AMissingDescriptionOrLocationIsAProgrammingError) {
    controller->orvaneDownloadInfo.store(std::nullopt);
    EXPECT_DEATH(start(), "the engine's description is needed before it was fetched");
    describe();
    controller->orvaneExeUrl.store(std::nullopt);
    EXPECT_DEATH(start(), "the engine's location is needed before it was built");
}

TEST_F(EngineDownloadTest, AProgressBarThatIsGoneIsAProgrammingError) {
    server.answer(kPath, response(kEngine));
    const auto startAndWait = [this] {
        start();
        desktop.runMainQueueUntil([this] { return handOvers > 0; });
    };
    controls.progressBar.reset();
    EXPECT_DEATH(startAndWait(), "the progress bar is gone");
}

TEST_F(EngineDownloadTest, ARunThatIsGoneHearsNothingOfItsDownload) {
    const Gate mayAnswer;
    server.answer(kPath, [mayAnswer](LoopbackConnection& connection) {
        EXPECT_TRUE(mayAnswer.wait());
        connection.send(response(kEngine));
    });
    CaptureStandardOutput output;
    start();
    controller.reset();
    mayAnswer.open();
    desktop.runMainQueueUntil([&] { return output.text().find("Deinit: ") != std::string::npos; });
    EXPECT_EQ(journal(), Lines{});
    EXPECT_EQ(handOvers, 0);
    EXPECT_EQ(contentsOf(deployment.engine()), kEngine);
}

TEST_F(EngineDownloadTest, WithoutALogTheEngineIsHandedOverJustSo) {
    withoutLog();
    offerEnciphered("xor", enciphered(info.Checksum));
    start();
    awaitHandOver();
    EXPECT_EQ(engineAtHandOver, kEngine);
    EXPECT_EQ(logLines(), Lines{});
}

// Enciphered downloads.

TEST_F(EngineDownloadTest, AnXorEnginesEncipheredFileIsFetchedVerifiedAndDecipheredBeforeTheHandOver) {
    offerEnciphered("xor", enciphered(info.Checksum));
    start();
    awaitHandOver();
    EXPECT_EQ(server.requestLines(), Lines{"GET /varlen/setup/Varlen-setup.enc"});
    EXPECT_EQ(contentsOf(encipheredFile(".enc")), enciphered(info.Checksum));
    EXPECT_EQ(engineAtHandOver, kEngine);
    EXPECT_EQ(logLines(), arrivedAnd("encrypted", info.EncryptedFileChecksum,
                                     {"Orvane is encrypted, decrypting it", "Orvane decrypted"}));
}

TEST_F(EngineDownloadTest, ALongerEngineThatWasThereKeepsItsTail) {
    writeFile(deployment.engine(), std::string(100, 'o'));
    offerEnciphered("xor", enciphered(info.Checksum));
    start();
    awaitHandOver();
    EXPECT_EQ(engineAtHandOver, kEngine + std::string(100 - std::string_view(kEngine).size(), 'o'));
}

TEST_F(EngineDownloadTest, AKeyThatCannotBeUsedEndsTheInstallationWithItsCode) {
    offerEnciphered("xor", "contents");
    info.Checksum = "123";
    describe();
    start();
    expectFailure(kInstallationFailed,
                  arrivedAnd("encrypted", info.EncryptedFileChecksum,
                             {"Orvane is encrypted, decrypting it", "Unable to decrypt orvane: code 1"}));
    EXPECT_NE(controller->orvaneDownloadTask.load(), nullptr) << "left as it is, since the process ends";
    EXPECT_FALSE(std::filesystem::exists(deployment.engine()));
}

TEST_F(EngineDownloadTest, AKeyThatCannotBeUsedEndsTheUninstallation) {
    controller->uninstall = true;
    offerEnciphered("xor", "contents");
    info.Checksum = "zz";
    describe();
    start();
    expectFatalError(kUninstallationFailed);
    EXPECT_EQ(logLines().back(), "Unable to decrypt orvane: code 3");
}

TEST_F(EngineDownloadTest, AnEngineFileThatCannotBeWrittenOverEndsTheInstallation) {
    std::filesystem::create_directories(deployment.engine());
    offerEnciphered("xor", enciphered(info.Checksum));
    start();
    expectFailure(kInstallationFailed,
                  arrivedAnd("encrypted", info.EncryptedFileChecksum,
                             {"Orvane is encrypted, decrypting it",
                              "Unable to decrypt orvane: " + deployment.engine().string() +
                                  ": Is a directory (EISDIR)"}));
    EXPECT_NE(controller->orvaneDownloadTask.load(), nullptr);
}

TEST_F(EngineDownloadTest, AnEncipheredEnginesPathMustBeAUrl) {
    offerEnciphered("xor", enciphered(info.Checksum));
    controller->orvaneExeUrl.store(deployment.folder() / "two words" / "varlen-setup");
    EXPECT_DEATH(start(), "the enciphered engine's location is not a URL: .*/two words/varlen-setup.enc");
}

TEST_F(EngineDownloadTest, AnUnknownCipherIsTakenAsDecipheredAlready) {
    offerEnciphered("aes", "contents");
    writeFile(deployment.engine(), "what is there");
    start();
    awaitHandOver();
    EXPECT_EQ(server.requestLines(), Lines{"GET /varlen/setup/Varlen-setup."});
    EXPECT_EQ(contentsOf(encipheredFile(".")), "contents");
    EXPECT_EQ(engineAtHandOver, "what is there");
    EXPECT_EQ(logLines().back(), "Orvane decrypted");
}

// Packages.

class PackageDownloadTest : public EngineDownloadTest {
protected:
    PackageDownloadTest() { offerEnciphered("pkg", kPackage); }

    /// A package installer first on the search path that notes its arguments and copies the package to the
    /// engine's place.
    void provideInstaller(int status) const {
        const auto installer = deployment.folder() / "bin" / "installer";
        writeFile(installer, "#!/bin/sh\necho \"$*\" >\"$0.arguments\"\ncp \"$4\" \"${4%.pkg}\"\nexit " +
                                 std::to_string(status) + "\n");
        ASSERT_EQ(chmod(installer.c_str(), 0755), 0);
    }

    EnvironmentVariable path{"PATH", (deployment.folder() / "bin").string() + ":/usr/bin:/bin"};
};

TEST_F(PackageDownloadTest, APackageIsFetchedVerifiedAndInstalledBeforeTheHandOver) {
    provideInstaller(0);
    start();
    awaitHandOver();
    EXPECT_EQ(server.requestLines(), Lines{"GET /varlen/setup/Varlen-setup.pkg"});
    EXPECT_EQ(contentsOf(encipheredFile(".pkg")), kPackage);
    EXPECT_EQ(engineAtHandOver, kPackage);
    EXPECT_EQ(logLines(), arrivedAnd("encrypted", info.EncryptedFileChecksum,
                                     {"Orvane is encrypted, decrypting it", "Orvane decrypted"}));
}

TEST_F(PackageDownloadTest, AnUninstallationsPackageIsInstalledUnderTheRootToo) {
    controller->uninstall = true;
    provideInstaller(0);
    start();
    awaitHandOver();
    EXPECT_EQ(contentsOf(deployment.folder() / "bin" / "installer.arguments"),
              "-allowUntrusted -verboseR -pkg " + encipheredFile(".pkg").string() + " -target /\n");
}

TEST_F(PackageDownloadTest, AnInstallerThatFailsEndsTheInstallationWithItsStatus) {
    provideInstaller(9);
    start();
    expectFailure(kInstallationFailed,
                  arrivedAnd("encrypted", info.EncryptedFileChecksum,
                             {"Orvane is encrypted, decrypting it", "Unable to decrypt orvane: code 9"}));
    EXPECT_NE(controller->orvaneDownloadTask.load(), nullptr);
}

TEST_F(PackageDownloadTest, WithoutAnInstallerTheCodeIsThatOfACommandNotFound) {
    start();
    expectFailure(kInstallationFailed,
                  arrivedAnd("encrypted", info.EncryptedFileChecksum,
                             {"Orvane is encrypted, decrypting it", "Unable to decrypt orvane: code 127"}));
}

} // namespace
} // namespace orvane::test
