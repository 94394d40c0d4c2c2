#pragma once

#include <string_view>

namespace orvane {

/// Whether `text` is well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF).
bool isValidUtf8(std::string_view text);

} // namespace orvane
