#include "platform/Locale.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

using platform::preferredLanguages;
using Languages = std::vector<std::string>;

/// Each test begins with none of the variables set.
class LocaleTest : public testing::Test {
private:
    const EnvironmentVariable language_{"LANGUAGE", std::nullopt};
    const EnvironmentVariable all_{"LC_ALL", std::nullopt};
    const EnvironmentVariable messages_{"LC_MESSAGES", std::nullopt};
    const EnvironmentVariable lang_{"LANG", std::nullopt};
};

TEST_F(LocaleTest, WithoutAnyVariableThereIsNoLanguage) { EXPECT_EQ(preferredLanguages(), Languages{}); }

TEST_F(LocaleTest, TheLocalesNameBecomesATag) {
    const std::vector<std::pair<std::string, std::string>> tags{{"de_CH.UTF-8", "de-CH"},
                                                                {"de_DE@euro", "de-DE"},
                                                                {"ca_ES.UTF-8@valencia", "ca-ES"},
                                                                {"sr_RS@latin.UTF-8", "sr-RS"},
                                                                {"fr", "fr"},
                                                                {"en-GB", "en-GB"},
                                                                {"zh_Hant_TW.UTF-8", "zh-Hant-TW"}};
    for (const auto& [name, tag] : tags) {
        const EnvironmentVariable variable("LANG", name);
        EXPECT_EQ(preferredLanguages(), Languages{tag}) << name;
    }
}

TEST_F(LocaleTest, TheLocalesOfProgramsGiveNoLanguage) {
    for (const std::string name : {"C", "POSIX", "C.UTF-8", "", ".UTF-8"}) {
        const EnvironmentVariable variable("LANG", name);
        EXPECT_EQ(preferredLanguages(), Languages{}) << name;
    }
}

TEST_F(LocaleTest, ANameOfUnderscoresAloneGivesNoLanguage) {
    for (const std::string name : {"_", "__.UTF-8", "_@euro"}) {
        const EnvironmentVariable variable("LANG", name);
        EXPECT_EQ(preferredLanguages(), Languages{}) << name;
    }
    const EnvironmentVariable language("LANGUAGE", "_:de");
    EXPECT_EQ(preferredLanguages(), Languages{"de"});
}

TEST_F(LocaleTest, TheStrongestVariableThatIsNotEmptyDecides) {
    const EnvironmentVariable lang("LANG", "en_US.UTF-8");
    EXPECT_EQ(preferredLanguages(), Languages{"en-US"});
    const EnvironmentVariable messages("LC_MESSAGES", "fr_FR.UTF-8");
    EXPECT_EQ(preferredLanguages(), Languages{"fr-FR"});
    const EnvironmentVariable all("LC_ALL", "de_AT.UTF-8");
    EXPECT_EQ(preferredLanguages(), Languages{"de-AT"});
    const EnvironmentVariable language("LANGUAGE", "it");
    EXPECT_EQ(preferredLanguages(), Languages{"it"});
    const EnvironmentVariable emptyLanguage("LANGUAGE", "");
    const EnvironmentVariable emptyAll("LC_ALL", "");
    EXPECT_EQ(preferredLanguages(), Languages{"fr-FR"});
}

TEST_F(LocaleTest, AProgramsLocaleThatIsStrongerHidesTheOthers) {
    const EnvironmentVariable lang("LANG", "fr_FR.UTF-8");
    const EnvironmentVariable all("LC_ALL", "C");
    EXPECT_EQ(preferredLanguages(), Languages{});
}

TEST_F(LocaleTest, TheLanguageListKeepsItsOrderAndSkipsWhatIsEmpty) {
    const EnvironmentVariable lang("LANG", "en_US.UTF-8");
    const EnvironmentVariable language("LANGUAGE", "de_CH:de::fr_CH.UTF-8:C:en:");
    EXPECT_EQ(preferredLanguages(), (Languages{"de-CH", "de", "fr-CH", "en"}));
}

} // namespace

} // namespace orvane::test
