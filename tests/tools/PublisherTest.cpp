#include "tools/Publisher.h"

#include "tests/support/TemporaryFolder.h"
#include "tools/ToolError.h"
#include "verify/Crypto.h"

#include <gtest/gtest.h>

#include <set>

namespace orvane::tools {
namespace {

using test::contentsOf;
using test::writeFile;

class Publisher : public testing::Test {
protected:
    Publisher() { writeFile(options_.input, engine_); }

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
        for (const auto& entry : std::filesystem::directory_iterator(options_.output)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    test::TemporaryFolder folder_;
    const std::string engine_ = "an engine long enough for its key, \xFF and more";
    PublishOptions options_{.input = folder_.path() / "engine",
                            .plainEngine = {},
                            .version = "14.2.7",
                            .url = "https://h.example/s/Varlen-setup",
                            .name = "Varlen-setup",
                            .digest = "sha256",
                            .cipher = Cipher::exclusiveOr,
                            .output = folder_.path() / "new" / "output"};
};

TEST_F(Publisher, WritesADescriptionThatTheProductReads) {
    const Publication publication = publish(options_);
    const std::string document = contentsOf(publication.descriptionFile);
    EXPECT_EQ(decodeFileDownloadInfo(bytesOf(document)), publication.description);
    EXPECT_EQ(publication.description.URL, options_.url);
    EXPECT_EQ(publication.description.Version, "14.2.7");
    EXPECT_EQ(publication.description.ChecksumAlgorithm, "sha256");
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "xor");
    EXPECT_EQ(publication.description.Size, static_cast<std::int64_t>(engine_.size()));
    EXPECT_EQ(publication.description.Checksum, sha256File(options_.input));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, sha256File(publication.engineFile));
    EXPECT_EQ(outputFiles(), (std::set<std::string>{"Varlen-setup.enc", "downloadinstaller.json"}));
}

TEST_F(Publisher, EnciphersSoThatTheProductDeciphers) {
    for (const char* digest : {"md5", "sha256"}) {
        options_.digest = digest;
        const Publication publication = publish(options_);
        EXPECT_NE(contentsOf(publication.engineFile), engine_);
        const auto deciphered = folder_.path() / (std::string("deciphered-") + digest);
        EXPECT_EQ(decryptXORFile(publication.description, deciphered, publication.engineFile), kXorSuccess);
        EXPECT_EQ(contentsOf(deciphered), engine_);
    }
}

TEST_F(Publisher, CopiesAPlainEngine) {
    options_.cipher = Cipher::none;
    options_.digest = "md5";
    const Publication publication = publish(options_);
    EXPECT_EQ(publication.engineFile, options_.output / "Varlen-setup");
    EXPECT_EQ(contentsOf(publication.engineFile), engine_);
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "");
    EXPECT_EQ(publication.description.Checksum, md5File(options_.input));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, publication.description.Checksum);
}

TEST_F(Publisher, DescribesTheEngineThatAPackageInstalls) {
    options_.cipher = Cipher::package;
    options_.plainEngine = options_.input;
    options_.input = folder_.path() / "package";
    writeFile(options_.input, "package");
    const Publication publication = publish(options_);
    EXPECT_EQ(publication.engineFile, options_.output / "Varlen-setup.pkg");
    EXPECT_EQ(contentsOf(publication.engineFile), "package");
    EXPECT_EQ(publication.description.EncryptionAlgorithm, "pkg");
    EXPECT_EQ(publication.description.Checksum, sha256File(options_.plainEngine));
    EXPECT_EQ(publication.description.EncryptedFileChecksum, sha256File(options_.input));
    EXPECT_EQ(publication.description.Size, static_cast<std::int64_t>(engine_.size()));
}

TEST_F(Publisher, ReplacesAnEarlierPublication) {
    publish(options_);
    writeFile(options_.input, "another engine that is also long enough for its key");
    options_.version = "14.3";
    const Publication publication = publish(options_);
    EXPECT_EQ(decodeFileDownloadInfo(bytesOf(contentsOf(publication.descriptionFile))),
              publication.description);
    EXPECT_EQ(sha256File(publication.engineFile), publication.description.EncryptedFileChecksum);
}

TEST_F(Publisher, DoesEverythingInADryRunButLeavesTheFolderAsItIs) {
    const Publication published = publish(options_);
    std::filesystem::remove_all(options_.output);
    options_.dryRun = true;
    const Publication rehearsed = publish(options_);
    EXPECT_EQ(rehearsed.description, published.description);
    EXPECT_EQ(rehearsed.engineFile, published.engineFile);
    EXPECT_EQ(rehearsed.descriptionFile, published.descriptionFile);
    EXPECT_FALSE(std::filesystem::exists(options_.output));
}

TEST_F(Publisher, RefusesADryRunForAFolderThatCannotBeMade) {
    // Executable, so that nothing but its kind stands against it.
    std::filesystem::permissions(options_.input, std::filesystem::perms::owner_all);
    options_.dryRun = true;
    options_.output = options_.input / "below" / "a file";
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
}

TEST_F(Publisher, TellsWhatItIsDoing) {
    std::vector<std::string> told;
    publish(options_, [&told](std::string_view what, std::optional<double>) { told.emplace_back(what); });
    EXPECT_EQ(told.front(), "reading " + options_.input.string());
    EXPECT_EQ(told.back(), "deciphering Varlen-setup.enc again");
}

TEST_F(Publisher, RefusesAMissingFile) {
    options_.input = folder_.path() / "missing";
    EXPECT_EQ(statusOfFailure(), ExitStatus::noInput);
    options_.input = folder_.path();
    EXPECT_EQ(statusOfFailure(), ExitStatus::noInput);
}

TEST_F(Publisher, RefusesAnEmptyFileAndOneShorterThanItsKey) {
    writeFile(options_.input, "");
    EXPECT_EQ(statusOfFailure(), ExitStatus::badData);
    writeFile(options_.input, std::string(31, 'a'));
    EXPECT_EQ(statusOfFailure(), ExitStatus::badData);
    writeFile(options_.input, std::string(32, 'a'));
    EXPECT_NO_THROW(publish(options_));
}

TEST_F(Publisher, RefusesAFolderThatCannotBeMade) {
    options_.output = options_.input / "below a file";
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
}

TEST_F(Publisher, LeavesNothingHalfMadeWhenItFails) {
    publish(options_);
    const std::string before = contentsOf(options_.output / "downloadinstaller.json");
    writeFile(options_.input, "another engine that is also long enough for its key");
    std::filesystem::remove(options_.output / "Varlen-setup.enc");
    // A folder in the place of the engine file cannot be replaced by it.
    writeFile(options_.output / "Varlen-setup.enc" / "file", "");
    EXPECT_EQ(statusOfFailure(), ExitStatus::cannotCreate);
    EXPECT_EQ(outputFiles(), (std::set<std::string>{"Varlen-setup.enc", "downloadinstaller.json"}));
    EXPECT_EQ(contentsOf(options_.output / "downloadinstaller.json"), before);
}

} // namespace
} // namespace orvane::tools
