#include "launcher/AdministratorRequest.h"

#include "platform/PreferredLanguages.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orvane::test {

namespace {

using launcher::Language;

/// A program that writes its languages and arguments into the pipe beside it.
std::filesystem::path recordingProgram(const std::filesystem::path& folder) {
    std::filesystem::path program = folder / "it's a \"program\"";
    writeFile(
        program,
        "#!/bin/sh\nprintf '%s\\n' \"$ORVANE_PREFERRED_LANGUAGES\" \"$@\" >\"$(dirname \"$0\")/record\"\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
}

TEST(AdministratorRequestTest, TheFirstFrenchOrGermanLanguageIsTheLaunchers) {
    EXPECT_EQ(launcher::languageFor({"de-CH", "fr-CH"}), Language::german);
    EXPECT_EQ(launcher::languageFor({"en", "it", "fr"}), Language::french);
    EXPECT_EQ(launcher::languageFor({"en", "GER"}), Language::german);
    EXPECT_EQ(launcher::languageFor({"fre", "de"}), Language::french);
}

TEST(AdministratorRequestTest, WithoutFrenchOrGermanTheLauncherSpeaksFrench) {
    EXPECT_EQ(launcher::languageFor({}), Language::french);
    EXPECT_EQ(launcher::languageFor({"en-GB", "it"}), Language::french);
}

TEST(AdministratorRequestTest, EachModeAndLanguageHasWordsOfItsOwn) {
    std::vector<std::string> texts;
    for (const Language language : {Language::french, Language::german}) {
        for (const bool uninstall : {false, true}) {
            texts.push_back(launcher::rightsPrompt(language, uninstall));
            texts.push_back(launcher::rightsRefused(language, uninstall));
        }
    }
    std::ranges::sort(texts);
    EXPECT_EQ(std::ranges::adjacent_find(texts), texts.end());
    EXPECT_EQ(launcher::rightsPrompt(Language::german, false),
              "Varlen braucht Administratorrechte, um die Programme zu installieren.");
    EXPECT_EQ(launcher::rightsPrompt(Language::french, true),
              "Varlen a besoin des droits d'administrateur pour désinstaller les logiciels.");
}

TEST(AdministratorRequestTest, TheCommandStartsTheProgramWithItsArgumentsUnchangedAndNoneAdded) {
    const TemporaryFolder folder;
    const std::vector<std::string> arguments{"--uninstall", "",     "two words", "it's",
                                             "$HOME",       "`id`", "a\\b\"c",   "line\nfeed"};
    ASSERT_EQ(mkfifo((folder.path() / "record").c_str(), 0600), 0);
    const std::string command =
        launcher::startCommand(recordingProgram(folder.path()), arguments, {"de-CH", "it's"});
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(contentsOf(folder.path() / "record"),
              "de-CH:it's\n--uninstall\n\ntwo words\nit's\n$HOME\n`id`\na\\b\"c\nline\nfeed\n");
}

TEST(AdministratorRequestTest, TheCommandLeavesNothingThatTheLauncherWouldWaitFor) {
    const std::string command = launcher::startCommand("/bin/sleep", {"1"}, {});
    EXPECT_EQ(command, "ORVANE_PREFERRED_LANGUAGES='' '/bin/sleep' '1' </dev/null >/dev/null 2>&1 &");
}

TEST(AdministratorRequestTest, TheScriptQuotesCommandAndPrompt) {
    EXPECT_EQ(
        launcher::administratorScript(R"('/a "b"\c' &)", R"(say "please")"),
        R"(do shell script "'/a \"b\"\\c' &" with prompt "say \"please\"" with administrator privileges)");
}

} // namespace

} // namespace orvane::test
