#include "tests/support/ControllerTest.h"

#include <limits>

namespace orvane::test {
namespace {

class LocaleChoiceTest : public ControllerTest {
protected:
    /// Chooses for a user with these languages, a list as the environment holds it.
    void chooseFor(const std::string& list) {
        const EnvironmentVariable preferred("LANGUAGE", list);
        const EnvironmentVariable all("LC_ALL", "C");
        startUp();
    }

    void expectChoice(const std::string& localeName, std::int64_t languageOffset) const {
        EXPECT_EQ(controller->localeName.load(), localeName);
        EXPECT_EQ(controller->languageOffset, languageOffset);
    }
};

TEST_F(LocaleChoiceTest, TheFirstLanguageThatHasTextsIsTaken) {
    chooseFor("en_US:de_CH:fr_CH");
    expectChoice("de-ch", 2000);
    EXPECT_EQ(logLines(),
              (std::vector<std::string>{"Checking preferred languages", "Found en-US", "Found de-CH"}));
}

TEST_F(LocaleChoiceTest, CapitalsMakeNoDifference) {
    chooseFor("FR");
    expectChoice("fr-ch", 1000);
}

TEST_F(LocaleChoiceTest, TheThreeLetterCodeOfFrenchIsKnown) {
    chooseFor("fre_CH");
    expectChoice("fr-ch", 1000);
}

TEST_F(LocaleChoiceTest, TheThreeLetterCodeOfGermanIsKnown) {
    chooseFor("ger");
    expectChoice("de-ch", 2000);
}

TEST_F(LocaleChoiceTest, ALanguageThatOnlyBeginsLikeOneOfOursIsNotOurs) {
    chooseFor("fra:den:frx_CH:de_AT");
    expectChoice("de-ch", 2000);
    EXPECT_TRUE(logHas("Found frx-CH"));
}

TEST_F(LocaleChoiceTest, WithoutPreferredLanguagesTheDefaultsStay) {
    chooseFor("");
    expectChoice("fr-CH", 1000);
    EXPECT_EQ(logLines(), std::vector<std::string>{"Checking preferred languages"});
}

TEST_F(LocaleChoiceTest, AUserOfOtherLanguagesReadsFrench) {
    chooseFor("en_GB:it_CH");
    expectChoice("fr-CH", 1000);
    EXPECT_EQ(controller->loadTranslatedString(0), "Annuler");
}

TEST_F(LocaleChoiceTest, EmptyPartsOfATagAreDropped) {
    chooseFor("-de-CH");
    expectChoice("de-ch", 2000);
}

TEST_F(LocaleChoiceTest, ATagOfHyphensAloneIsInvalidInput) { EXPECT_DEATH(chooseFor("--"), "hyphens"); }

TEST_F(LocaleChoiceTest, WithoutALogTheChoiceIsTheSame) {
    const EnvironmentVariable preferred("LANGUAGE", "de_CH");
    controller->initializeLocale();
    expectChoice("de-ch", 2000);
    EXPECT_FALSE(std::filesystem::exists(deployment.values.logRoot));
}

TEST_F(LocaleChoiceTest, TextsComeInTheChosenLanguage) {
    chooseFor("de_CH");
    EXPECT_EQ(controller->loadTranslatedString(13), "Ja");
}

TEST_F(LocaleChoiceTest, AnUnknownTextIsNamedByItsIdentifier) {
    chooseFor("de_CH");
    EXPECT_EQ(controller->loadTranslatedString(text::kFirstUnassigned),
              "undefined text: " + std::to_string(text::kFirstUnassigned));
    EXPECT_EQ(controller->loadTranslatedString(-1), "undefined text: -1");
    EXPECT_EQ(controller->loadTranslatedString(std::numeric_limits<std::int64_t>::min()),
              "undefined text: -9223372036854775808");
}

TEST_F(LocaleChoiceTest, TheLargestIdentifierThatHasAKeyIsAnUnknownTextLikeAnyOther) {
    chooseFor("fr_CH");
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max() - language::kFrench;
    EXPECT_EQ(controller->loadTranslatedString(largest), "undefined text: 9223372036854774807");
    EXPECT_DEATH(controller->loadTranslatedString(largest + 1), "identifier");
}

TEST_F(LocaleChoiceTest, BeforeTheChoiceEveryTextIsUnknown) {
    EXPECT_EQ(controller->loadTranslatedString(0), "undefined text: 0");
}

TEST_F(LocaleChoiceTest, AMissingTranslationIsShownAsItStands) {
    chooseFor("de_CH");
    controller->languageOffset = language::kEnglish;
    EXPECT_EQ(controller->loadTranslatedString(6), "**Voulez-vous démarrer l'installation ?**");
}

TEST_F(LocaleChoiceTest, AnIdentifierPastTheRangeOfKeysIsAProgrammingError) {
    EXPECT_DEATH(controller->loadTranslatedString(std::numeric_limits<std::int64_t>::max()), "identifier");
}

} // namespace
} // namespace orvane::test
