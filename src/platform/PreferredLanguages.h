#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Lists of language tags as one text, the tags separated by colons.
namespace orvane::platform {

/// The environment variable in which the macOS launcher hands the user's languages to the program that it
/// starts as root: root has preferred languages of its own.
inline constexpr char kPreferredLanguagesVariable[] = "ORVANE_PREFERRED_LANGUAGES";

std::string joinLanguages(const std::vector<std::string>& languages);

/// Empty tags are left out.
std::vector<std::string> splitLanguages(std::string_view list);

} // namespace orvane::platform
