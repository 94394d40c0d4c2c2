#include "launcher/AdministratorRequest.h"

#include "platform/PreferredLanguages.h"

#include <algorithm>
#include <cctype>

namespace orvane::launcher {

namespace {

/// `text` as one word of a POSIX shell.
std::string shellWord(std::string_view text) {
    std::string word = "'";
    for (const char character : text) {
        if (character == '\'') {
            word += R"('\'')";
        } else {
            word += character;
        }
    }
    word += "'";
    return word;
}

/// `text` as a string literal of AppleScript.
std::string scriptLiteral(std::string_view text) {
    std::string literal = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            literal += '\\';
        }
        literal += character;
    }
    literal += "\"";
    return literal;
}

/// "de" of "de-CH", in lower case.
std::string primaryLanguage(std::string_view tag) {
    std::string language(tag.substr(0, tag.find('-')));
    std::ranges::transform(language, language.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return language;
}

} // namespace

Language languageFor(const std::vector<std::string>& preferredLanguages) {
    for (const std::string& tag : preferredLanguages) {
        const std::string language = primaryLanguage(tag);
        if (language == "fr" || language == "fre") {
            return Language::french;
        }
        if (language == "de" || language == "ger") {
            return Language::german;
        }
    }
    return Language::french;
}

std::string rightsPrompt(Language language, bool uninstall) {
    if (language == Language::german) {
        return uninstall ? "Varlen braucht Administratorrechte, um die Programme zu entfernen."
                         : "Varlen braucht Administratorrechte, um die Programme zu installieren.";
    }
    return uninstall ? "Varlen a besoin des droits d'administrateur pour désinstaller les logiciels."
                     : "Varlen a besoin des droits d'administrateur pour installer les logiciels.";
}

std::string rightsRefused(Language language, bool uninstall) {
    if (language == Language::german) {
        return std::string(uninstall ? "Ohne Administratorrechte kann Varlen nicht entfernt werden."
                                     : "Ohne Administratorrechte kann Varlen nicht installiert werden.") +
               " Starten Sie das Programm noch einmal und geben Sie Name und Passwort eines Administrators "
               "ein, "
               "oder wenden Sie sich an Ihren Systemadministrator.";
    }
    return std::string(uninstall ? "Varlen ne peut pas être désinstallé sans les droits d'administrateur."
                                 : "Varlen ne peut pas être installé sans les droits d'administrateur.") +
           " Relancez le programme et saisissez le nom et le mot de passe d'un administrateur, ou contactez "
           "votre "
           "administrateur système.";
}

std::string startCommand(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::vector<std::string>& preferredLanguages) {
    std::string command = platform::kPreferredLanguagesVariable;
    command += "=";
    command += shellWord(platform::joinLanguages(preferredLanguages));
    command += " ";
    command += shellWord(program.string());
    for (const std::string& argument : arguments) {
        command += " ";
        command += shellWord(argument);
    }
    // Nothing is left that the shell, and with it the launcher, would wait for.
    command += " </dev/null >/dev/null 2>&1 &";
    return command;
}

std::string administratorScript(std::string_view command, std::string_view prompt) {
    return "do shell script " + scriptLiteral(command) + " with prompt " + scriptLiteral(prompt) +
           " with administrator privileges";
}

} // namespace orvane::launcher
