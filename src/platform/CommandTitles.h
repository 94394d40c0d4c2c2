#pragma once

#include <string>
#include <string_view>

namespace orvane::platform {

/// The titles of the commands that a Mac user expects in every menu bar, as the system words them.
struct CommandTitles {
    std::string about;
    std::string hide;
    std::string hideOthers;
    std::string showAll;
    std::string window; ///< of the menu with the next two
    std::string minimise;
    std::string close;

    bool operator==(const CommandTitles&) const = default;
};

/// In German for a language tag such as "de-ch", otherwise in French, as the texts of the program. `program`
/// is its name as the user knows it.
CommandTitles commandTitles(std::string_view languageTag, const std::string& program);

} // namespace orvane::platform
