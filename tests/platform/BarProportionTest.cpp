#include "platform/BarProportion.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {

namespace {

using platform::barProportion;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(BarProportionTest, IsTheValuesPlaceInItsRange) {
    EXPECT_EQ(barProportion(0, 100, 0), 0);
    EXPECT_EQ(barProportion(0, 100, 12.5), 0.125);
    EXPECT_EQ(barProportion(0, 100, 100), 1);
    EXPECT_EQ(barProportion(10, 20, 15), 0.5);
}

TEST(BarProportionTest, IsBoundedWhateverTheValue) {
    EXPECT_EQ(barProportion(0, 100, 150), 1);
    EXPECT_EQ(barProportion(0, 100, kInfinity), 1);
    for (const double value : {-1.0, -kInfinity, kNotANumber}) {
        EXPECT_EQ(barProportion(0, 100, value), 0);
    }
    EXPECT_EQ(barProportion(0, 0, 0), 0);
    EXPECT_EQ(barProportion(0, kNotANumber, 50), 0);
}

} // namespace

} // namespace orvane::test
