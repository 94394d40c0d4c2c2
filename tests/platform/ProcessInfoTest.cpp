#include "platform/ProcessInfo.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace orvane::test {

namespace {

TEST(ProcessInfoTest, TheIdentifierIsTheSystems) { EXPECT_EQ(platform::processIdentifier(), ::getpid()); }

} // namespace

} // namespace orvane::test
