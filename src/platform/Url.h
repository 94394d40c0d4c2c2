#pragma once

#include "platform/Error.h"

#include <optional>
#include <string_view>

namespace orvane {

/// Whether `text` can be a URL at all: not empty, only characters that RFC 3986 admits, each percent sign
/// followed by two hexadecimal digits. Nothing is said of its scheme or host.
bool parsesAsUrl(std::string_view text);

/// Why nobody is asked for what lies at `url`: its scheme is not HTTPS, or it has none. Nothing for an
/// address that may be gone to.
std::optional<platform::Error> refusalOfAddress(std::string_view url);

} // namespace orvane
