#include "tools/PublicationFolder.h"

#include "tests/support/TemporaryFolder.h"
#include "tools/DescriptionJson.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

class PublicationFolderTest : public testing::Test {
protected:
    void publish(const std::string& version) {
        const FileDownloadInfo info{.URL = "https://h.example/" + version + "/engine",
                                    .Checksum = std::string(64, 'a'),
                                    .ChecksumAlgorithm = "sha256",
                                    .EncryptedFileChecksum = std::string(64, 'b'),
                                    .EncryptionAlgorithm = "xor",
                                    .Size = 3,
                                    .Version = version};
        test::writeFile(path_ / version / kDescriptionName, documentOf(info));
        test::writeFile(path_ / version / "engine.enc", "abc");
    }

    std::vector<std::string> names(const std::vector<PublishedVersion>& versions) {
        std::vector<std::string> found;
        for (const PublishedVersion& version : versions) {
            found.push_back(version.description.Version);
        }
        return found;
    }

    template <typename Operation>
    std::optional<ExitStatus> failureOf(Operation operation) {
        try {
            operation();
        } catch (const ToolError& error) {
            return error.status();
        }
        return std::nullopt;
    }

    test::TemporaryFolder temporary_;
    const fs::path path_ = temporary_.path();
    const PublicationFolder folder_{path_};
};

using Names = std::vector<std::string>;

TEST_F(PublicationFolderTest, ListsVersionsFromTheNewestByTheirNumbers) {
    for (const char* version : {"14.9", "14.10", "2.0"}) {
        publish(version);
    }
    test::writeFile(path_ / ".15.0.partial" / "engine.enc", "half");
    test::writeFile(path_ / "notes" / "file", "");
    EXPECT_EQ(names(folder_.versions()), (Names{"14.10", "14.9", "2.0"}));
    EXPECT_EQ(folder_.versions().front().size, 3);
    EXPECT_FALSE(folder_.versions().front().isCurrent);
}

TEST_F(PublicationFolderTest, SwitchesForwardAndBack) {
    publish("14.2.7");
    publish("14.3.1");
    EXPECT_EQ(folder_.description(Channel::current), std::nullopt);
    for (const char* version : {"14.2.7", "14.3.1", "14.2.7"}) {
        folder_.switchTo(Channel::current, folder_.version(version));
        EXPECT_EQ(test::contentsOf(path_ / kDescriptionName),
                  test::contentsOf(path_ / version / kDescriptionName));
    }
    EXPECT_TRUE(folder_.versions().back().isCurrent);
    EXPECT_FALSE(folder_.versions().front().isCurrent);
}

TEST_F(PublicationFolderTest, ReplacesADescriptionInOneStep) {
    publish("14.2.7");
    publish("14.3.1");
    folder_.switchTo(Channel::current, folder_.version("14.2.7"));
    fs::create_hard_link(path_ / kDescriptionName, path_ / "as a reader has it open");
    const std::string before = test::contentsOf(path_ / kDescriptionName);
    folder_.switchTo(Channel::current, folder_.version("14.3.1"));
    EXPECT_EQ(test::contentsOf(path_ / "as a reader has it open"), before);
}

TEST_F(PublicationFolderTest, StagesAVersionBesideTheCurrentOne) {
    publish("14.2.7");
    publish("14.3.1");
    folder_.switchTo(Channel::current, folder_.version("14.2.7"));
    folder_.switchTo(Channel::staged, folder_.version("14.3.1"));
    EXPECT_TRUE(folder_.versions().front().isStaged);
    EXPECT_TRUE(folder_.versions().back().isCurrent);
    folder_.endStaging();
    folder_.endStaging();
    EXPECT_FALSE(folder_.versions().front().isStaged);
}

TEST_F(PublicationFolderTest, PrunesNeitherTheCurrentNorTheStagedVersion) {
    for (const char* version : {"1", "2", "3", "4", "5"}) {
        publish(version);
    }
    folder_.switchTo(Channel::current, folder_.version("1"));
    folder_.switchTo(Channel::staged, folder_.version("2"));
    EXPECT_EQ(names(prunable(folder_.versions(), 2)), (Names{"3"}));
    EXPECT_EQ(names(prunable(folder_.versions(), 9)), Names());
    folder_.remove(folder_.version("3"));
    EXPECT_EQ(names(folder_.versions()), (Names{"5", "4", "2", "1"}));
}

TEST_F(PublicationFolderTest, PrunesNothingWhileTheCurrentVersionIsUnknown) {
    publish("1");
    test::writeFile(path_ / kDescriptionName, "damaged");
    EXPECT_EQ(failureOf([&] { folder_.versions(); }), ExitStatus::noInput);
    // It can still be replaced.
    folder_.switchTo(Channel::current, folder_.version("1"));
    EXPECT_TRUE(folder_.versions().front().isCurrent);
}

TEST_F(PublicationFolderTest, NamesWhatIsMissing) {
    EXPECT_EQ(failureOf([&] { folder_.version("14.2.7"); }), ExitStatus::noInput);
    EXPECT_EQ(failureOf([&] { PublicationFolder(path_ / "none").versions(); }), ExitStatus::noInput);
    publish("14.2.7");
    fs::rename(path_ / "14.2.7", path_ / "14.3");
    EXPECT_EQ(failureOf([&] { folder_.version("14.3"); }), ExitStatus::badData);
    publish("14.4");
    fs::remove(path_ / "14.4" / "engine.enc");
    EXPECT_EQ(failureOf([&] { folder_.version("14.4"); }), ExitStatus::noInput);
}

} // namespace
} // namespace orvane::tools
