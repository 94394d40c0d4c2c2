#include "verify/Versions.h"

#include "tests/support/DeathTest.h"

namespace orvane {
namespace {

constexpr auto ascending = ComparisonResult::ascending;
constexpr auto same = ComparisonResult::same;
constexpr auto descending = ComparisonResult::descending;

TEST(VersionsTest, ResultsAreNumberedFromOlderToNewer) {
    EXPECT_EQ(static_cast<int>(ascending), -1);
    EXPECT_EQ(static_cast<int>(same), 0);
    EXPECT_EQ(static_cast<int>(descending), 1);
}

TEST(VersionsTest, EqualVersionsAreTheSame) {
    EXPECT_EQ(compareVersions("2.20.7", "2.20.7"), same);
    EXPECT_EQ(compareVersions("", ""), same);
}

TEST(VersionsTest, TheLastComponentDecidesBetweenOtherwiseEqualVersions) {
    EXPECT_EQ(compareVersions("2.20.6", "2.20.7"), ascending);
    EXPECT_EQ(compareVersions("2.20.7", "2.20.6"), descending);
}

TEST(VersionsTest, AnEarlierComponentOutweighsALaterOne) {
    EXPECT_EQ(compareVersions("2.0.99", "2.1.0"), ascending);
    EXPECT_EQ(compareVersions("3.0", "2.99"), descending);
}

TEST(VersionsTest, DigitsCompareByTheirNumericValue) {
    EXPECT_EQ(compareVersions("1.10", "1.9"), descending);
    EXPECT_EQ(compareVersions("1.9", "1.10"), ascending);
}

TEST(VersionsTest, LeadingZerosDoNotCount) {
    EXPECT_EQ(compareVersions("1.09", "1.9"), same);
    EXPECT_EQ(compareVersions("1.010", "1.9"), descending);
    EXPECT_EQ(compareVersions("1.00", "1.0"), same);
}

TEST(VersionsTest, AShorterVersionIsContinuedByZeros) {
    EXPECT_EQ(compareVersions("1.2", "1.2.0"), same);
    EXPECT_EQ(compareVersions("1.2.0", "1.2"), same);
    EXPECT_EQ(compareVersions("1", "1.0.0.0"), same);
    EXPECT_EQ(compareVersions("1.2", "1.2.1"), ascending);
    EXPECT_EQ(compareVersions("1.2.1", "1.2"), descending);
    EXPECT_EQ(compareVersions("2.21", "2.20.7"), descending);
}

TEST(VersionsTest, EmptyComponentsCountAsComponents) {
    // Both have three components, so nothing is continued and the full stop meets a digit.
    EXPECT_EQ(compareVersions("1..2", "1.0.2"), ascending);
    // One against two: ".0" against "1.0".
    EXPECT_EQ(compareVersions("", "1.0"), ascending);
}

TEST(VersionsTest, DigitRunsOfAnyLengthDoNotOverflow) {
    const std::string huge(100, '9');
    const std::string oneMoreDigit = "1" + std::string(100, '0');
    EXPECT_EQ(compareVersions("1." + huge, "1." + oneMoreDigit), ascending);
    EXPECT_EQ(compareVersions("1." + huge, "1." + huge), same);
    EXPECT_EQ(compareVersions("1.18446744073709551616", "1.0"), descending);
    EXPECT_EQ(compareVersions("1.18446744073709551617", "1.18446744073709551616"), descending);
}

TEST(VersionsTest, OtherCharactersCompareLiterally) {
    EXPECT_EQ(compareVersions("2.0a", "2.0b"), ascending);
    EXPECT_EQ(compareVersions("2.0b2", "2.0b10"), ascending);
    EXPECT_EQ(compareVersions("2.0B", "2.0b"), ascending);
    EXPECT_EQ(compareVersions("2.0b1", "2.0"), descending);
}

TEST(VersionsTest, ACarriageReturnIsPartOfTheVersion) {
    EXPECT_EQ(compareVersions("2.20.7\r", "2.20.7"), descending);
}

TEST(VersionsTest, TheMajorVersionIsTheFirstComponent) {
    EXPECT_EQ(majorVersion("3.1.4"), "3");
    EXPECT_EQ(majorVersion("30.1"), "30");
    EXPECT_EQ(majorVersion("14"), "14");
}

TEST(VersionsTest, TheMajorVersionIsTextAndNotANumber) {
    EXPECT_EQ(majorVersion("02.1"), "02");
    EXPECT_EQ(majorVersion("v2 beta.1"), "v2 beta");
}

TEST(VersionsTest, EmptyComponentsBeforeTheMajorVersionAreSkipped) {
    EXPECT_EQ(majorVersion(".3.1"), "3");
    EXPECT_EQ(majorVersion("...7"), "7");
}

using VersionsDeathTest = test::DeathTest;

TEST_F(VersionsDeathTest, AVersionWithoutAComponentIsInvalidInput) {
    EXPECT_DEATH(majorVersion(""), "invalid input: a version has no first component: \"\"");
    EXPECT_DEATH(majorVersion("..."), R"(invalid input: a version has no first component: "\.\.\.")");
}

} // namespace
} // namespace orvane
