#pragma once

#include <string>

namespace orvane::tools {

// Checks for an option's value: the objection to it, or an empty text.

std::string checkVersion(const std::string& value);      ///< a dotted version such as 14.2.7
std::string checkHttpsAddress(const std::string& value); ///< a URL with the scheme "https"

} // namespace orvane::tools
