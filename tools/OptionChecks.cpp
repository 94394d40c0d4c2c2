#include "tools/OptionChecks.h"

#include "platform/Url.h"

namespace orvane::tools {

std::string checkVersion(const std::string& value) {
    const bool rightCharacters = value.find_first_not_of("0123456789.") == std::string::npos;
    const bool rightPoints =
        !value.starts_with('.') && !value.ends_with('.') && value.find("..") == std::string::npos;
    if (value.empty() || !rightCharacters || !rightPoints) {
        return "must be a dotted version such as 14.2.7, not \"" + value + "\"";
    }
    return {};
}

std::string checkHttpsAddress(const std::string& value) {
    if (!parsesAsUrl(value) || !value.starts_with("https://")) {
        return "must be an HTTPS URL, not \"" + value + "\"";
    }
    return {};
}

} // namespace orvane::tools
