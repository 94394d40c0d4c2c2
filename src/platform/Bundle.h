#pragma once

#include <optional>
#include <string>

namespace orvane::platform {

/// This program's own version (what a macOS bundle calls CFBundleShortVersionString).
std::optional<std::string> ownVersion();

} // namespace orvane::platform
