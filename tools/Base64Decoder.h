#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane::tools {

/// Decodes standard base64 (RFC 4648) with padding and without line breaks. Nothing for any other text.
std::optional<std::string> base64Decoded(std::string_view text);

} // namespace orvane::tools
