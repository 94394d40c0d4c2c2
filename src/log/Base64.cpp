#include "log/Base64.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace orvane {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;

/// One to three bytes become four characters; each missing byte costs one of them, which "=" stands for.
void appendGroup(std::string& text, ByteView group) {
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < kGroupBytes; ++index) {
        bits = bits << 8U | (index < group.size() ? std::to_integer<std::uint32_t>(group[index]) : 0);
    }
    for (std::size_t index = 0; index < kGroupCharacters; ++index) {
        const std::uint32_t sixBits = bits >> (18U - 6U * index) & 0x3FU;
        text += index <= group.size() ? kAlphabet[sixBits] : '=';
    }
}

} // namespace

std::string base64Encoded(ByteView bytes) {
    std::string text;
    text.reserve((bytes.size() + kGroupBytes - 1) / kGroupBytes * kGroupCharacters);
    while (!bytes.empty()) {
        const std::size_t length = std::min(kGroupBytes, bytes.size());
        appendGroup(text, bytes.first(length));
        bytes = bytes.subspan(length);
    }
    return text;
}

} // namespace orvane
