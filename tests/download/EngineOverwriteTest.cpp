#include "platform/CodeSignature.h"
#include "tests/download/EngineDownloadFixture.h"
#include "verify/Crypto.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

constexpr char kOldEngine[] = "an older engine, longer than the one that is installed over it";

/// Runs with each platform's answer to `remembersCodeSignatures`: an engine that was run to ask for its
/// version is then written over.
class EngineOverwriteTest : public EngineDownloadTest {
protected:
    EngineOverwriteTest() {
        writeFile(deployment.engine(), kOldEngine);
        std::filesystem::permissions(deployment.engine(), std::filesystem::perms(0744));
        std::filesystem::create_hard_link(deployment.engine(), kept);
    }

    /// `kept` is what the kernel knows the old engine by.
    void expectNewFileWhereSignaturesAreRemembered() const {
        const bool isNew = platform::remembersCodeSignatures();
        EXPECT_EQ(std::filesystem::equivalent(deployment.engine(), kept), !isNew);
        if (isNew) {
            EXPECT_EQ(contentsOf(kept), kOldEngine);
        }
        struct stat status {};
        EXPECT_EQ(::stat(deployment.engine().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0744U);
    }

    const std::filesystem::path kept = deployment.folder() / "kept";
};

TEST_F(EngineOverwriteTest, APlainDownload) {
    server.answer(kPath, response(kEngine));
    start();
    awaitHandOver();
    EXPECT_EQ(contentsOf(deployment.engine()), kEngine);
    expectNewFileWhereSignaturesAreRemembered();
}

TEST_F(EngineOverwriteTest, ADecryptionKeepsTheTailOfALongerEngine) {
    const std::filesystem::path encrypted = deployment.folder() / "varlen-setup.enc";
    writeFile(encrypted, "abcde");
    info.Checksum = "0A0b";
    info.Size = 5;
    EXPECT_EQ(decryptXORFile(info, deployment.engine(), encrypted), 0);
    EXPECT_EQ(contentsOf(deployment.engine()), "kiioo" + std::string(kOldEngine).substr(5));
    expectNewFileWhereSignaturesAreRemembered();
}

} // namespace
} // namespace orvane::test
