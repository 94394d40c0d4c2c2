#include "platform/PreferredLanguages.h"

#include <algorithm>

namespace orvane::platform {

std::string joinLanguages(const std::vector<std::string>& languages) {
    std::string list;
    for (const std::string& language : languages) {
        list += (list.empty() ? "" : ":") + language;
    }
    return list;
}

std::vector<std::string> splitLanguages(std::string_view list) {
    std::vector<std::string> languages;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(':'), list.size());
        if (length > 0) {
            languages.emplace_back(list.substr(0, length));
        }
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return languages;
}

} // namespace orvane::platform
