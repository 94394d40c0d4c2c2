#include "platform/Locale.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

namespace orvane::platform {

namespace {

std::string_view environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// `language[_territory][.codeset][@modifier]` (setlocale(3)) as a tag; empty for the locales of programs and
/// for a name of underscores alone.
std::string languageTag(std::string_view localeName) {
    std::string tag(localeName.substr(0, localeName.find_first_of(".@")));
    if (tag == "C" || tag == "POSIX" || tag.find_first_not_of('_') == std::string::npos) {
        return {};
    }
    std::replace(tag.begin(), tag.end(), '_', '-');
    return tag;
}

/// The names of the user's locales, separated by colons (gettext(3) for the order of the variables).
std::string_view localeNames() {
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const std::string_view value = environmentValue(variable); !value.empty()) {
            return value;
        }
    }
    return {};
}

} // namespace

std::vector<std::string> preferredLanguages() {
    std::vector<std::string> languages;
    std::string_view rest = localeNames();
    while (!rest.empty()) {
        const std::size_t length = std::min(rest.find(':'), rest.size());
        if (std::string tag = languageTag(rest.substr(0, length)); !tag.empty()) {
            languages.push_back(std::move(tag));
        }
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return languages;
}

} // namespace orvane::platform
