#include "platform/PreferredLanguages.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

using platform::joinLanguages;
using platform::splitLanguages;
using Languages = std::vector<std::string>;

TEST(PreferredLanguagesTest, AListIsTheTagsWithColonsBetweenThem) {
    EXPECT_EQ(joinLanguages({}), "");
    EXPECT_EQ(joinLanguages({"de-CH"}), "de-CH");
    EXPECT_EQ(joinLanguages({"it", "de-CH", "fr"}), "it:de-CH:fr");
}

TEST(PreferredLanguagesTest, AListIsReadBackInItsOrder) {
    EXPECT_EQ(splitLanguages("it:de-CH:fr"), (Languages{"it", "de-CH", "fr"}));
    EXPECT_EQ(splitLanguages("de"), Languages{"de"});
}

TEST(PreferredLanguagesTest, EmptyTagsAreLeftOut) {
    EXPECT_EQ(splitLanguages(""), Languages{});
    EXPECT_EQ(splitLanguages("::"), Languages{});
    EXPECT_EQ(splitLanguages(":de::fr:"), (Languages{"de", "fr"}));
}

} // namespace

} // namespace orvane::test
