#include "model/ExecutableBit.h"

#include "platform/Error.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orvane {
namespace {

class ExecutableBitTest : public testing::Test {
protected:
    /// The permissions of an engine file after it was made executable, and before.
    unsigned permissionsAfter(unsigned before) const {
        test::writeFile(engine, "engine");
        EXPECT_EQ(chmod(engine.c_str(), before), 0);
        ensureExecutable(engine);
        struct stat status {};
        EXPECT_EQ(stat(engine.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    test::TemporaryFolder folder;
    std::filesystem::path engine = folder.path() / "varlen-setup";
};

TEST_F(ExecutableBitTest, AFileWithoutTheBitGets0744) {
    EXPECT_EQ(permissionsAfter(0644), 0744U);
    EXPECT_EQ(permissionsAfter(0600), 0744U);
    EXPECT_EQ(permissionsAfter(0666), 0744U);
}

TEST_F(ExecutableBitTest, AnExecutableFileIsLeftAsItIs) {
    EXPECT_EQ(permissionsAfter(0755), 0755U);
    EXPECT_EQ(permissionsAfter(0700), 0700U);
}

TEST_F(ExecutableBitTest, ALinkedFileIsMadeExecutable) {
    const auto linked = folder.path() / "elsewhere";
    test::writeFile(linked, "engine");
    ASSERT_EQ(chmod(linked.c_str(), 0644), 0);
    std::filesystem::create_symlink(linked, engine);
    ensureExecutable(engine);
    struct stat status {};
    ASSERT_EQ(stat(linked.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0744U);
}

TEST_F(ExecutableBitTest, AMissingFileThrowsThePlatformsError) {
    try {
        ensureExecutable(engine);
        ADD_FAILURE() << "a missing file was made executable";
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.localizedDescription(), engine.string() + ": No such file or directory (ENOENT)");
    }
}

} // namespace
} // namespace orvane
