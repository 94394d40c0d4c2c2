#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

/// Reads the whole of `text` as a decimal number: an optional sign, then ASCII digits and nothing else,
/// within the signed 64-bit range. Anything else is no number.
std::optional<std::int64_t> messageNumber(std::string_view text);

} // namespace orvane
