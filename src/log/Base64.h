#pragma once

#include "platform/Bytes.h"

#include <cstdint>
#include <string>

namespace orvane {

/// Standard base64 (RFC 4648, "=" padding, no line breaks).
std::string base64Encoded(ByteView bytes);

/// Appends the base64 of `bytes` to `text`. Content in several pieces gives the same text if each piece but
/// the last holds a multiple of three bytes.
void appendBase64(std::string& text, ByteView bytes);

/// How many characters so many bytes become.
std::size_t base64Length(std::uint64_t byteCount);

} // namespace orvane
