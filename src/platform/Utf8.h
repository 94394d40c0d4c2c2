#pragma once

#include <cstddef>
#include <string_view>

namespace orvane {

/// Whether `text` is well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF).
bool isValidUtf8(std::string_view text);

/// How many bytes of `text` precede the first sequence that is not well formed; all of them in valid text.
std::size_t validUtf8Length(std::string_view text);

} // namespace orvane
