#pragma once

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::test {

/// For tests that see the process abort. The dying process is started anew instead of
/// forked, which other threads and the sanitizers bear; since it cleans nothing up, its temporary folders lie
/// in one of this process's.
class DeathTest : public testing::Test {
protected:
    DeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// Also holds what the dying process leaves in its temporary folders.
    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
    EnvironmentVariable temporaryFolders_{"TMPDIR", folder_.path().string()};
};

} // namespace orvane::test
