#include "tests/download/EngineDownloadFixture.h"

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

constexpr char kNoConnection[] =
    "Aucune connexion réseau disponible. Contactez votre administrateur système afin de vérifier qu'aucun "
    "pare-feu/antivirus ne bloque le téléchargement. Assurez-vous également que les domaines suivants sont "
    "bien débloqués: downloads.vendor.example, www.vendor.example, *.vendor.example.";
constexpr char kDownloadIncorrect[] =
    "Un pare-feu bloque probablement le téléchargement (par ex. SonicWall). Contactez votre administrateur "
    "système afin qu'il débloque toute requête vers downloads.vendor.example, www.vendor.example et "
    "*.vendor.example.";

// Failures before and during the transfer.

TEST_F(EngineDownloadTest, AFolderThatCannotBeMadeEndsTheInstallation) {
    writeFile(deployment.values.engineRoot, "a file in the way");
    start();
    expectFailure(kInstallationFailed,
                  {"Unable to create orvane directory: " + deployment.engine().parent_path().string() +
                   ": Not a directory (ENOTDIR)"});
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
}

TEST_F(EngineDownloadTest, AFolderThatCannotBeMadeEndsTheUninstallation) {
    controller->uninstall = true;
    writeFile(deployment.values.engineRoot, "a file in the way");
    start();
    expectFatalError(kUninstallationFailed);
}

TEST_F(EngineDownloadTest, ATargetThatCannotBeOpenedEndsTheInstallation) {
    std::filesystem::create_directories(deployment.engine());
    start();
    expectFailure(kInstallationFailed, {"Unable to download orvane: The operation could not be completed. "
                                        "(OrvaneBootstrap.DownloadError error 0.)"});
    EXPECT_EQ(server.requestLines(), Lines{"POST /crashreport"});
    EXPECT_EQ(controller->orvaneDownloadTask.load(), nullptr);
}

TEST_F(EngineDownloadTest, ATargetThatCannotBeOpenedEndsTheUninstallation) {
    controller->uninstall = true;
    std::filesystem::create_directories(deployment.engine());
    start();
    expectFatalError(kUninstallationFailed);
}

TEST_F(EngineDownloadTest, WithoutAServerTheUserReadsOfTheNetwork) {
    info.URL = std::string(TestDeployment::kNobody) + kPath;
    describe();
    start();
    expectFatalError(kNoConnection);
    ASSERT_EQ(logLines().size(), 1U);
    EXPECT_TRUE(logLines().front().starts_with("Unable to download orvane: ")) << logLines().front();
    EXPECT_NE(logLines().front().find("localhost"), std::string::npos) << logLines().front();
    EXPECT_EQ(handOvers, 0);
    EXPECT_EQ(controller->orvaneDownloadTask.load(), nullptr);
}

TEST_F(EngineDownloadTest, TheTextOfATransferFailureIsTheSameForAnUninstallation) {
    controller->uninstall = true;
    info.URL = std::string(TestDeployment::kNobody) + kPath;
    describe();
    start();
    expectFatalError(kNoConnection);
}

TEST_F(EngineDownloadTest, ATransferThatBreaksOffIsATransferFailureAndItsPartStays) {
    server.answer(kPath, [](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\npart");
        connection.drop();
    });
    start();
    expectFatalError(kNoConnection);
    EXPECT_EQ(contentsOf(deployment.engine()), "part");
    EXPECT_EQ(logLines().size(), 1U);
    EXPECT_EQ(handOvers, 0);
}

TEST_F(EngineDownloadTest, AServerThatFallsSilentIsATransferFailure) {
    deployment.values.downloadTimeout = 1s;
    const Gate mayEnd;
    server.answer(kPath, [mayEnd](LoopbackConnection&) { mayEnd.wait(); });
    start();
    expectFatalError(kNoConnection);
    mayEnd.open();
    EXPECT_TRUE(logLines().front().starts_with("Unable to download orvane: "));
}

// Digests.

TEST_F(EngineDownloadTest, AnErrorPageIsAnIncorrectDownloadAndStaysUnderTheEnginesName) {
    const std::string page = "<html>Not Found</html>";
    server.answer(kPath, response(page, "404 Not Found"));
    start();
    expectFailure(kDownloadIncorrect, arrivedLines("decrypted", md5Of(page)));
    EXPECT_EQ(contentsOf(deployment.engine()), page);
    EXPECT_EQ(controller->orvaneDownloadTask.load(), nullptr);
}

TEST_F(EngineDownloadTest, AnIncorrectEncipheredDownloadIsNotDeciphered) {
    offerEnciphered("xor", enciphered(info.Checksum));
    info.EncryptedFileChecksum = "00";
    describe();
    start();
    expectFailure(kDownloadIncorrect, arrivedLines("encrypted", md5Of(enciphered(info.Checksum))));
    EXPECT_FALSE(std::filesystem::exists(deployment.engine()));
}

TEST_F(EngineDownloadTest, AnUnreadableDownloadEndsInTheTextOfALocalFailure) {
    // The file is there when the transfer opens it and a folder when its digest is computed.
    server.answer(kPath, [this](LoopbackConnection& connection) {
        std::filesystem::remove(deployment.engine());
        std::filesystem::create_directory(deployment.engine());
        connection.send(response(kEngine));
    });
    start();
    expectFatalError(kInstallationFailed);
    EXPECT_EQ(logLines().back(), "Unable to compute file checksum: " + deployment.engine().string() +
                                     ": Is a directory (EISDIR)");
}

TEST_F(EngineDownloadTest, WithoutALogFailuresEndTheRunJustSo) {
    withoutLog();
    server.answer(kPath, response("wrong"));
    start();
    expectFatalError(kDownloadIncorrect);
    EXPECT_EQ(server.requestLines(), Lines{"GET /varlen/setup/Varlen-setup"});
}

} // namespace
} // namespace orvane::test
