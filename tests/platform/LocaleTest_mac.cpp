#include "platform/Locale.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

namespace {

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isPartOfTag(char character) {
    return isLetter(character) || (character >= '0' && character <= '9') || character == '-';
}

TEST(LocaleTest, TheUserHasAtLeastOneLanguage) { EXPECT_FALSE(platform::preferredLanguages().empty()); }

TEST(LocaleTest, LanguagesAreTagsThatBeginWithTwoOrThreeLetters) {
    for (const std::string& tag : platform::preferredLanguages()) {
        const std::size_t length = std::min(tag.find('-'), tag.size());
        EXPECT_TRUE(length == 2 || length == 3) << tag;
        EXPECT_TRUE(std::all_of(tag.begin(), tag.begin() + static_cast<std::ptrdiff_t>(length), isLetter))
            << tag;
        EXPECT_TRUE(std::all_of(tag.begin(), tag.end(), isPartOfTag)) << tag;
    }
}

} // namespace

} // namespace orvane::test
