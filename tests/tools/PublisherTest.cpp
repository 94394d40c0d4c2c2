#include "tools/Publisher.h"

#include "tests/support/TemporaryFolder.h"
#include "tools/ProgramFormat.h"
#include "tools/ToolError.h"
#include "verify/Crypto.h"

#include <gtest/gtest.h>

#include <set>

namespace orvane::tools {
namespace {

using test::contentsOf;
using test::writeFile;
namespace fs = std::filesystem;

class PublisherTest : public testing::Test {
protected:
    PublisherTest() { writeFile(options_.input, engine_); }

    ExitStatus statusOfFailure() {
        try {
            publish(options_);
        } catch (const ToolError& error) {
            return error.status();
        }
        ADD_FAILURE() << "nothing failed";
        return ExitStatus::usage;
    }

    std::set<std::string> outputFiles() const {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(options_.folder)) {
            names.insert(fs::relative(entry.path(), options_.folder).string());
        }
        return names;
    }

    test::TemporaryFolder folder_;
    const std::string engine_ = "an engine long enough for its key, \xFF and more";
    PublishOptions options_{.input = folder_.path() / "engine",
                            .plainEngine = {},
                            .version = "14.2.7",
                            .baseUrl = "https://h.example/s",
                            .name = "Varlen-setup",
                            .digest = "sha256",
                            .cipher = Cipher::exclusiveOr,
                            .folder = folder_.path() / "new" / "output",
                            .system = thisSystem()};
};

TEST_F(PublisherTest, WritesADescriptionThatTheProductReads) {
    const Publication publication = publish(options_);
    const std::string document = contentsOf(publication.descriptionFile);
    EXPECT_EQ(decodeFileDownloadInfo(bytesOf(document)), publication.description);
    EXPECT_EQ(publication.description.URL, "https://h.example/s/14.2.7/Varlen-setup");
    EXPECT_EQ(publication.description.Version, "14.2.7");
    EXPECT_EQ(publication.description.ChecksumAlgorithm, "sha256");
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "xor");
    EXPECT_EQ(publication.description.Size, static_cast<std::int64_t>(engine_.size()));
    EXPECT_EQ(publication.description.Checksum, sha256File(options_.input));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, sha256File(publication.engineFile));
    EXPECT_EQ(outputFiles(),
              (std::set<std::string>{"14.2.7", "14.2.7/Varlen-setup.enc", "14.2.7/downloadinstaller.json"}));
}

TEST_F(PublisherTest, EnciphersSoThatTheProductDeciphers) {
    for (const char* digest : {"md5", "sha256"}) {
        options_.digest = digest;
        options_.folder = folder_.path() / digest;
        const Publication publication = publish(options_);
        EXPECT_NE(contentsOf(publication.engineFile), engine_);
        const auto deciphered = folder_.path() / (std::string("deciphered-") + digest);
        EXPECT_EQ(decryptXORFile(publication.description, deciphered, publication.engineFile), kXorSuccess);
        EXPECT_EQ(contentsOf(deciphered), engine_);
    }
}

TEST_F(PublisherTest, CopiesAPlainEngine) {
    options_.cipher = Cipher::none;
    options_.digest = "md5";
    const Publication publication = publish(options_);
    EXPECT_EQ(publication.engineFile, options_.folder / "14.2.7" / "Varlen-setup");
    EXPECT_EQ(contentsOf(publication.engineFile), engine_);
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "");
    EXPECT_EQ(publication.description.Checksum, md5File(options_.input));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, publication.description.Checksum);
}

TEST_F(PublisherTest, DescribesTheEngineThatAPackageInstalls) {
    options_.cipher = Cipher::package;
    options_.plainEngine = options_.input;
    options_.input = folder_.path() / "package";
    writeFile(options_.input, "package");
    const Publication publication = publish(options_);
    EXPECT_EQ(publication.engineFile, options_.folder / "14.2.7" / "Varlen-setup.pkg");
    EXPECT_EQ(contentsOf(publication.engineFile), "package");
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "pkg");
    EXPECT_EQ(publication.description.Checksum, sha256File(options_.plainEngine));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, sha256File(options_.input));
    EXPECT_EQ(publication.description.Size, static_cast<std::int64_t>(engine_.size()));
}

TEST_F(PublisherTest, NeverChangesAVersionThatIsPublished) {
    const Publication first = publish(options_);
    EXPECT_TRUE(first.isNew);
    const std::string before = contentsOf(first.engineFile);
    writeFile(options_.input, "another engine that is also long enough for its key");
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
    EXPECT_EQ(contentsOf(first.engineFile), before);
    EXPECT_EQ(outputFiles().size(), 3U);
    options_.version = "14.3";
    const Publication second = publish(options_);
    EXPECT_EQ(second.description.URL, "https://h.example/s/14.3/Varlen-setup");
    EXPECT_EQ(contentsOf(first.engineFile), before);
}

TEST_F(PublisherTest, AcceptsTheSamePublicationAgain) {
    const Publication first = publish(options_);
    const Publication again = publish(options_);
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(again.description, first.description);
    // A published file that was damaged is found.
    writeFile(first.engineFile, "damaged");
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
}

TEST_F(PublisherTest, MakesTheSameBytesOfTheSameEngine) {
    const Publication first = publish(options_);
    options_.folder = folder_.path() / "elsewhere";
    const Publication second = publish(options_);
    EXPECT_EQ(contentsOf(first.engineFile), contentsOf(second.engineFile));
    EXPECT_EQ(contentsOf(first.descriptionFile), contentsOf(second.descriptionFile));
}

TEST_F(PublisherTest, EncryptsEnginesOfEveryLengthAroundAChunk) {
    for (const std::size_t length : {(1U << 20) - 1, 1U << 20, (1U << 20) + 1, (2U << 20) + 33}) {
        writeFile(options_.input, std::string(length, 'e'));
        options_.folder = folder_.path() / std::to_string(length);
        const Publication publication = publish(options_);
        EXPECT_EQ(fs::file_size(publication.engineFile), length);
        EXPECT_EQ(publication.description.EncryptedFileChecksum, sha256File(publication.engineFile));
    }
}

TEST_F(PublisherTest, DoesEverythingInADryRunButLeavesTheFolderAsItIs) {
    const Publication published = publish(options_);
    std::filesystem::remove_all(options_.folder);
    options_.dryRun = true;
    const Publication rehearsed = publish(options_);
    EXPECT_EQ(rehearsed.description, published.description);
    EXPECT_EQ(rehearsed.engineFile, published.engineFile);
    EXPECT_EQ(rehearsed.descriptionFile, published.descriptionFile);
    EXPECT_FALSE(std::filesystem::exists(options_.folder));
}

TEST_F(PublisherTest, RefusesADryRunForAFolderThatCannotBeMade) {
    // Executable, so that nothing but its kind stands against it.
    std::filesystem::permissions(options_.input, std::filesystem::perms::owner_all);
    options_.dryRun = true;
    options_.folder = options_.input / "below" / "a file";
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
}

TEST_F(PublisherTest, TellsWhatItIsDoing) {
    std::vector<std::string> told;
    publish(options_, [&told](const Progress& progress) { told.emplace_back(progress.what); });
    EXPECT_EQ(told.front(), "reading " + options_.input.string());
    EXPECT_EQ(told.back(), "decrypting Varlen-setup.enc again");
}

TEST_F(PublisherTest, RefusesAMissingFile) {
    options_.input = folder_.path() / "missing";
    EXPECT_EQ(statusOfFailure(), ExitStatus::noInput);
    options_.input = folder_.path();
    EXPECT_EQ(statusOfFailure(), ExitStatus::noInput);
}

TEST_F(PublisherTest, RefusesAnEmptyFileAndOneShorterThanItsKey) {
    writeFile(options_.input, "");
    EXPECT_EQ(statusOfFailure(), ExitStatus::badData);
    writeFile(options_.input, std::string(31, 'a'));
    EXPECT_EQ(statusOfFailure(), ExitStatus::badData);
    writeFile(options_.input, std::string(32, 'a'));
    EXPECT_NO_THROW(publish(options_));
}

TEST_F(PublisherTest, RefusesAFolderThatCannotBeMade) {
    options_.folder = options_.input / "below a file";
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
}

TEST_F(PublisherTest, LeavesNothingHalfMadeWhenItFails) {
    // A file in the place of the version's folder cannot be replaced by it.
    writeFile(options_.folder / "14.2.7", "");
    EXPECT_EQ(statusOfFailure(), ExitStatus::noInput);
    EXPECT_EQ(outputFiles(), (std::set<std::string>{"14.2.7"}));
}

TEST_F(PublisherTest, ClearsAwayWhatAnEndedProcessLeft) {
    writeFile(options_.folder / ".14.2.7.partial" / "Varlen-setup.enc", "half");
    publish(options_);
    EXPECT_EQ(outputFiles().size(), 3U);
}

} // namespace
} // namespace orvane::tools
