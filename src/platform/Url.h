#pragma once

#include "platform/Error.h"

#include <optional>
#include <string_view>

namespace orvane {

/// Whether `text` can be a URL or a relative reference (RFC 3986): not empty, only the characters admitted
/// there, each percent sign followed by two hexadecimal digits, at most one number sign, and square brackets
/// only as a pair around the whole host. Scheme, host name and port are not looked at.
bool parsesAsUrl(std::string_view text);

/// Why nobody is asked for what lies at `url`: its scheme is not HTTPS, or it has none. Nothing for an
/// address that may be gone to.
std::optional<platform::Error> refusalOfAddress(std::string_view url);

} // namespace orvane
