#include "platform/Files.h"

#include "platform/Error.h"
#include "tests/platform/ErrorExpectation.h"
#include "tests/platform/PlatformErrors.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orvane::test {

namespace {

using namespace platform;
using std::filesystem::path;

class FilesTest : public testing::Test {
protected:
    path at(const std::string& name) const { return folder_.path() / name; }

private:
    const TemporaryFolder folder_;
};

unsigned permissionsOf(const path& file) {
    struct stat status {};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

TEST_F(FilesTest, FilesFoldersAndWhatLinksLeadToExist) {
    writeFile(at("file"), "");
    std::filesystem::create_symlink(at("file"), at("link"));
    std::filesystem::create_symlink(at("nothing"), at("dangling"));
    EXPECT_TRUE(fileExists(at("file")));
    EXPECT_TRUE(fileExists(at("")));
    EXPECT_TRUE(fileExists(at("link")));
    EXPECT_FALSE(fileExists(at("dangling")));
    EXPECT_FALSE(fileExists(at("nothing")));
    EXPECT_FALSE(fileExists(at("file") / "below"));
}

TEST_F(FilesTest, PermissionsDecideWhatIsExecutable) {
    writeFile(at("engine"), "#!/bin/sh\n");
    setPosixPermissions(at("engine"), 0644);
    EXPECT_FALSE(isExecutableFile(at("engine")));
    setPosixPermissions(at("engine"), 0744);
    EXPECT_EQ(permissionsOf(at("engine")), 0744U);
    EXPECT_TRUE(isExecutableFile(at("engine")));
    EXPECT_FALSE(isExecutableFile(at("nothing")));
}

TEST_F(FilesTest, PermissionsOfAMissingFileCannotBeSet) {
    expectError(ENOENT, at("nothing"), [&] { setPosixPermissions(at("nothing"), 0744); });
}

TEST_F(FilesTest, MissingFoldersAreCreatedAndExistingOnesAccepted) {
    createDirectoryWithIntermediates(at("one/two/three"));
    EXPECT_TRUE(std::filesystem::is_directory(at("one/two/three")));
    createDirectoryWithIntermediates(at("one/two/three"));
    createDirectoryWithIntermediates(at("one/two/four/"));
    EXPECT_TRUE(std::filesystem::is_directory(at("one/two/four")));
}

TEST_F(FilesTest, AFolderCannotBeCreatedWhereAFileIs) {
    writeFile(at("file"), "");
    expectError(platformErrors().folderCreatedButIsFile, at("file"),
                [&] { createDirectoryWithIntermediates(at("file")); });
    expectError(ENOTDIR, at("file/below"), [&] { createDirectoryWithIntermediates(at("file/below")); });
}

TEST_F(FilesTest, RemovesAFile) {
    writeFile(at("file"), "contents");
    removeItem(at("file"));
    EXPECT_FALSE(fileExists(at("file")));
}

TEST_F(FilesTest, NothingToRemoveIsNoError) { EXPECT_NO_THROW(removeItem(at("nothing"))); }

TEST_F(FilesTest, WhatCannotBeReachedCannotBeRemoved) {
    writeFile(at("file"), "");
    expectError(ENOTDIR, at("file/below"), [&] { removeItem(at("file/below")); });
}

TEST_F(FilesTest, RemovesAFolderWithItsContentsAndFollowsNoLink) {
    writeFile(at("kept/file"), "kept");
    writeFile(at("folder/deeper/file"), "");
    std::filesystem::create_symlink(at("kept"), at("folder/deeper/link"));
    std::filesystem::create_symlink(at("kept/file"), at("folder/another"));
    removeItem(at("folder"));
    EXPECT_FALSE(fileExists(at("folder")));
    EXPECT_EQ(contentsOf(at("kept/file")), "kept");
}

TEST_F(FilesTest, RemovesALinkAndNotWhatItLeadsTo) {
    writeFile(at("folder/file"), "kept");
    for (const path& goal : {at("folder"), at("folder/file"), at("nothing")}) {
        std::filesystem::create_symlink(goal, at("link"));
        removeItem(at("link"));
        EXPECT_FALSE(std::filesystem::is_symlink(at("link")));
    }
    EXPECT_EQ(contentsOf(at("folder/file")), "kept");
}

TEST_F(FilesTest, ANewFileHoldsExactlyItsContents) {
    const std::string contents("zero\0and\r\n", 10);
    writeNewFile(at("new"), bytesOf(contents));
    EXPECT_EQ(contentsOf(at("new")), contents);
    writeNewFile(at("empty"), {});
    EXPECT_EQ(contentsOf(at("empty")), "");
    EXPECT_FALSE(isExecutableFile(at("new")));
}

TEST_F(FilesTest, ANewFileReplacesNothing) {
    writeFile(at("old"), "old");
    expectError(EEXIST, at("old"), [&] { writeNewFile(at("old"), bytesOf("new")); });
    EXPECT_EQ(contentsOf(at("old")), "old");
    std::filesystem::create_symlink(at("elsewhere"), at("link"));
    expectError(EEXIST, at("link"), [&] { writeNewFile(at("link"), bytesOf("new")); });
    EXPECT_FALSE(fileExists(at("elsewhere")));
}

TEST_F(FilesTest, ANewFileInAMissingFolderIsAnError) {
    expectError(ENOENT, at("missing/new"), [&] { writeNewFile(at("missing/new"), {}); });
}

} // namespace

} // namespace orvane::test
