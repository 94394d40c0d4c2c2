#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace orvane::fuzz {

/// Makes a finding of the input at hand where something that must hold does not.
inline void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "finding: this does not hold: %s\n", what);
        std::abort();
    }
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Takes the beginning of `rest` up to its first `separator`, and drops the separator.
inline std::string_view takeUpTo(char separator, std::string_view& rest) {
    const std::size_t length = rest.find(separator);
    const std::string_view taken = rest.substr(0, length);
    rest = length == std::string_view::npos ? std::string_view() : rest.substr(length + 1);
    return taken;
}

} // namespace orvane::fuzz
