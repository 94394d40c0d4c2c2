#pragma once

#include <string_view>

namespace orvane {

/// Whether `text` can be a URL at all: not empty, only characters that RFC 3986 admits, each percent sign
/// followed by two hexadecimal digits. Nothing is said of its scheme or host.
bool parsesAsUrl(std::string_view text);

} // namespace orvane
