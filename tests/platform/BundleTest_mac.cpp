#include "platform/Bundle.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

TEST(BundleTest, AProgramWithoutABundleHasNoVersion) { EXPECT_FALSE(platform::ownVersion()); }

} // namespace

} // namespace orvane::test
