#include "platform/Files.h"

#include "tests/platform/ErrorExpectation.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::test {

namespace {

using platform::FileHandle;
using std::filesystem::path;

/// A file that another user could write to, and what the program then writes in its place.
class OwnedFileTest : public testing::Test {
protected:
    path at(const std::string& name) const { return folder_.path() / name; }

    path fileWith(const std::string& contents, mode_t permissions) const {
        writeFile(at("file"), contents);
        EXPECT_EQ(chmod(at("file").c_str(), permissions), 0);
        return at("file");
    }

    std::size_t fileCount() const {
        const std::filesystem::directory_iterator files(folder_.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    static void download(const path& file, const std::string& contents) {
        std::FILE* const stream = platform::openForDownload(file);
        EXPECT_EQ(std::fputs(contents.c_str(), stream), 1);
        std::fclose(stream);
    }

private:
    const TemporaryFolder folder_;
};

struct stat statusOf(const path& file) {
    struct stat status {};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status;
}

unsigned permissionsOf(const path& file) { return statusOf(file).st_mode & 07777U; }

TEST_F(OwnedFileTest, AFileThatOnlyItsOwnerMayWriteIsWrittenInPlace) {
    for (const mode_t permissions : std::initializer_list<mode_t>{0600, 0644, 0744, 0755}) {
        const path file = fileWith("old contents", permissions);
        const ino_t number = statusOf(file).st_ino;
        FileHandle::forWriting(file).write(bytesOf("new"));
        EXPECT_EQ(contentsOf(file), "new contents");
        download(file, "shorter");
        EXPECT_EQ(contentsOf(file), "shorter");
        EXPECT_EQ(statusOf(file).st_ino, number);
        EXPECT_EQ(permissionsOf(file), permissions);
        std::filesystem::remove(file);
    }
}

TEST_F(OwnedFileTest, PermissionsThatWouldLetOthersWriteAreGoneBeforeTheFirstByte) {
    for (const mode_t permissions : std::initializer_list<mode_t>{04777, 02755, 04744, 0664, 0606}) {
        const path file = fileWith("old contents", permissions);
        const FileHandle handle = FileHandle::forWriting(file);
        EXPECT_EQ(permissionsOf(file), permissions & 0755U);
        EXPECT_EQ(contentsOf(file), "old contents");
        handle.write(bytesOf("new"));
        EXPECT_EQ(contentsOf(file), "new contents");
        std::filesystem::remove(file);

        download(fileWith("old contents", permissions), "shorter");
        EXPECT_EQ(permissionsOf(file), permissions & 0755U);
        EXPECT_EQ(contentsOf(file), "shorter");
        EXPECT_EQ(fileCount(), 1U);
        std::filesystem::remove(file);
    }
}

TEST_F(OwnedFileTest, ADescriptorThatAnotherUserHoldsNoLongerReachesTheFile) {
    const path file = fileWith("old contents", 0666);
    const int others = open(file.c_str(), O_RDWR | O_CLOEXEC);
    FileHandle::forWriting(file).write(bytesOf("new"));
    EXPECT_EQ(pwrite(others, "bad", 3, 0), 3);
    EXPECT_EQ(contentsOf(file), "new contents");
    close(others);

    ASSERT_EQ(chmod(file.c_str(), 0666), 0);
    const int othersAgain = open(file.c_str(), O_RDWR | O_CLOEXEC);
    download(file, "downloaded");
    EXPECT_EQ(pwrite(othersAgain, "bad", 3, 0), 3);
    EXPECT_EQ(contentsOf(file), "downloaded");
    close(othersAgain);
}

TEST_F(OwnedFileTest, AHardLinkKeepsTheOldFile) {
    const path file = fileWith("old contents", 0666);
    std::filesystem::create_hard_link(file, at("another name"));
    download(file, "downloaded");
    EXPECT_EQ(contentsOf(at("another name")), "old contents");
    EXPECT_EQ(contentsOf(file), "downloaded");
}

TEST_F(OwnedFileTest, ALinkKeepsLeadingToTheFile) {
    const path file = fileWith("old contents", 0666);
    std::filesystem::create_symlink("file", at("link"));
    FileHandle::forWriting(at("link")).write(bytesOf("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(at("link")));
    EXPECT_EQ(contentsOf(file), "new contents");
    EXPECT_EQ(permissionsOf(file), 0644U);
}

TEST_F(OwnedFileTest, ContentsOfSeveralChunksAreKept) {
    const std::string contents(3'500'000, 'x');
    const path file = fileWith(contents, 0666);
    FileHandle::forWriting(file).write(bytesOf("new"));
    EXPECT_TRUE(contentsOf(file) == "new" + contents.substr(3));
}

TEST_F(OwnedFileTest, AFileOfAnotherUserBecomesOurs) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a file away";
    }
    const path file = fileWith("old contents", 0755);
    ASSERT_EQ(chown(file.c_str(), 12345, 12345), 0);
    const FileHandle handle = FileHandle::forWriting(file);
    EXPECT_EQ(statusOf(file).st_uid, geteuid());
    EXPECT_EQ(permissionsOf(file), 0755U);
    handle.write(bytesOf("new"));
    EXPECT_EQ(contentsOf(file), "new contents");

    ASSERT_EQ(chown(file.c_str(), 12345, 12345), 0);
    download(file, "downloaded");
    EXPECT_EQ(statusOf(file).st_uid, geteuid());
    EXPECT_EQ(contentsOf(file), "downloaded");
}

TEST_F(OwnedFileTest, ADownloadMakesAMissingFileAndFollowsADanglingLink) {
    download(at("new"), "downloaded");
    EXPECT_EQ(contentsOf(at("new")), "downloaded");
    std::filesystem::create_symlink("goal", at("link"));
    download(at("link"), "downloaded");
    EXPECT_EQ(contentsOf(at("goal")), "downloaded");
    expectError(ENOENT, at("missing/new"), [&] { platform::openForDownload(at("missing/new")); });
}

} // namespace

} // namespace orvane::test
