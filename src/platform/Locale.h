#pragma once

#include <string>
#include <vector>

namespace orvane::platform {

/// The user's languages in order of preference, as tags such as "de-CH". May be empty.
std::vector<std::string> preferredLanguages();

} // namespace orvane::platform
