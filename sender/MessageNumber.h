#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace orvane {

/// Reads the whole of `text` as a decimal number: an optional sign, then ASCII digits and nothing else,
/// within the signed 64-bit range. Anything else is no number.
inline std::optional<std::int64_t> messageNumber(std::string_view text) {
    // std::from_chars knows the minus sign but not the plus sign, which must not bring a second sign with it.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

} // namespace orvane
