#pragma once

#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/Gate.h"
#include "tests/support/RunTest.h"
#include "verify/Crypto.h"

#include <string>
#include <thread>

namespace orvane::test {

/// A run that downloads the engine, from a server whose answers the test gives. The description is that of a
/// plain download until the test offers an enciphered one.
class EngineDownloadTest : public RunTest {
protected:
    using Lines = std::vector<std::string>;
    static constexpr char kPath[] = "/varlen/setup/Varlen-setup";
    static constexpr char kEngine[] = "the engine itself, which is longer than its digest, as engines are";

    EngineDownloadTest() {
        info.URL = server.root() + kPath;
        info.ChecksumAlgorithm = "md5";
        info.Checksum = md5Of(kEngine);
        info.Size = std::string_view(kEngine).size();
        describe();
    }

    std::string md5Of(const std::string& contents) const {
        writeFile(deployment.folder() / "digested", contents);
        return md5File(deployment.folder() / "digested");
    }

    void describe() { controller->orvaneDownloadInfo.store(info); }

    /// Offers `contents` as the engine enciphered by `algorithm`.
    void offerEnciphered(const std::string& algorithm, const std::string& contents) {
        info.EncryptionAlgorithm = algorithm;
        info.EncryptedFileChecksum = md5Of(contents);
        describe();
        controller->isOrvaneEncrypted = true;
        server.answer(kPath + encryptedFileSuffix(algorithm), response(contents));
    }

    static std::string enciphered(const std::string& key) {
        const XorResult result = computeXOREncryption(bytesOf(kEngine), key);
        EXPECT_EQ(result.code, kXorSuccess);
        return std::string(textOf(result.data.value()));
    }

    std::filesystem::path encipheredFile(const std::string& suffix) const {
        return deployment.engine().string() + suffix;
    }

    /// Starts the download as the decision task does; the status of the process goes on being none.
    void start() {
        EXPECT_EQ(BackgroundWork([this] { controller->downloadOrvane([this] { handedOver(); }); }).wait(),
                  std::nullopt);
    }

    void handedOver() {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        ++handOvers;
        engineAtHandOver = contentsOf(deployment.engine());
        EXPECT_NE(controller->orvaneDownloadTask.load(), nullptr) << "cleared only after the handler";
    }

    void awaitHandOver() {
        desktop.runMainQueueUntil([this] { return handOvers > 0; });
        desktop.drainMainQueue();
        EXPECT_EQ(handOvers, 1);
        EXPECT_EQ(controller->orvaneDownloadTask.load(), nullptr);
        EXPECT_TRUE(desktop.shownAlerts().empty());
    }

    /// The fatal alert shows `message`, the log ends in `lines`, and the engine is not handed over.
    void expectFailure(const std::string& message, const Lines& lines) {
        expectFatalError(message);
        EXPECT_EQ(logLines(), lines);
        EXPECT_EQ(handOvers, 0);
        EXPECT_EQ(server.requestLines().back(), "POST /crashreport");
    }

    /// The log of a download that arrived, up to the comparison of its digest.
    Lines arrivedLines(const std::string& kind, const std::string& local) const {
        return {"Orvane download finished", "Checking if orvane checksums match",
                kind + " orvane local checksum is " + local + ", remote checksum is" +
                    info.EncryptedFileChecksum};
    }

    Lines arrivedAnd(const std::string& kind, const std::string& local, const Lines& more) const {
        Lines lines = arrivedLines(kind, local);
        lines.insert(lines.end(), more.begin(), more.end());
        return lines;
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    FileDownloadInfo info;
    int handOvers = 0;
    std::string engineAtHandOver;
};

} // namespace orvane::test
