#pragma once

#include "platform/Bytes.h"

#include <string>

namespace orvane {

/// Standard base64 (RFC 4648, "=" padding, no line breaks).
std::string base64Encoded(ByteView bytes);

} // namespace orvane
