#include "platform/ProcessInfo.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

TEST(ProcessInfoTest, TheNameIsTheExecutablesWithoutItsFolder) {
    EXPECT_EQ(platform::processName(), "OrvaneBootstrapSelfTest");
}

} // namespace

} // namespace orvane::test
