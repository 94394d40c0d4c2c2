#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::launcher {

/// The language of the launcher's own texts.
enum class Language { french, german };

/// The first of the user's preferred languages that is French or German; French if none is, as in the
/// program.
Language languageFor(const std::vector<std::string>& preferredLanguages);

/// What the system's dialog for administrator rights says above the user's name and password.
std::string rightsPrompt(Language language, bool uninstall);

/// What the user reads when the rights were not given, for whatever reason.
std::string rightsRefused(Language language, bool uninstall);

/// The shell command that starts `program` with `arguments` and returns at once. The program learns
/// `preferredLanguages` from its environment (`kPreferredLanguagesVariable`), since root has languages of its
/// own; no argument is added.
std::string startCommand(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::vector<std::string>& preferredLanguages);

/// An AppleScript that runs `command` in a shell as root, after the system has asked the user with `prompt`.
std::string administratorScript(std::string_view command, std::string_view prompt);

} // namespace orvane::launcher
