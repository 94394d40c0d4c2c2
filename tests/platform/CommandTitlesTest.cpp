#include "platform/CommandTitles.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

using platform::commandTitles;

TEST(CommandTitlesTest, FrenchAsTheSystemWordsThem) {
    EXPECT_EQ(
        commandTitles("fr-ch", "Varlen"),
        (platform::CommandTitles{"À propos de Varlen", "Masquer Varlen", "Masquer les autres",
                                 "Tout afficher", "Fenêtre", "Placer dans le Dock", "Fermer la fenêtre"}));
}

TEST(CommandTitlesTest, GermanAsTheSystemWordsThem) {
    EXPECT_EQ(
        commandTitles("de-ch", "Varlen"),
        (platform::CommandTitles{"Über Varlen", "Varlen ausblenden", "Andere ausblenden", "Alle einblenden",
                                 "Fenster", "Im Dock ablegen", "Fenster schliessen"}));
}

TEST(CommandTitlesTest, AnyOtherLanguageReadsFrenchAsInTheTextsOfTheProgram) {
    EXPECT_EQ(commandTitles("fr-CH", "Varlen"), commandTitles("fr-ch", "Varlen"));
    EXPECT_EQ(commandTitles("en", "Varlen"), commandTitles("fr-ch", "Varlen"));
    EXPECT_EQ(commandTitles("", "Varlen"), commandTitles("fr-ch", "Varlen"));
}

} // namespace

} // namespace orvane::test
