#include "platform/Bundle.h"

#include "config/VendorValues.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace orvane::test {

namespace {

TEST(BundleTest, OwnVersionIsTheOneOfTheBuild) {
    ASSERT_TRUE(platform::ownVersion());
    EXPECT_EQ(*platform::ownVersion(), vendor::kOwnVersion);
}

TEST(BundleTest, OwnVersionIsNumbersBetweenDots) {
    const std::string version = platform::ownVersion().value();
    EXPECT_EQ(version.find_first_not_of("0123456789."), std::string::npos);
    EXPECT_EQ(std::count(version.begin(), version.end(), '.'), 2);
}

} // namespace

} // namespace orvane::test
