#include "log/Base64.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvane {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;

/// One to three bytes become four characters. "=" stands for each missing byte.
std::array<char, kGroupCharacters> encodedGroup(ByteView group) {
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < kGroupBytes; ++index) {
        bits = bits << 8U | (index < group.size() ? std::to_integer<std::uint32_t>(group[index]) : 0);
    }
    std::array<char, kGroupCharacters> characters{};
    for (std::size_t index = 0; index < kGroupCharacters; ++index) {
        const std::uint32_t sixBits = bits >> (18U - 6U * index) & 0x3FU;
        characters[index] = index <= group.size() ? kAlphabet[sixBits] : '=';
    }
    return characters;
}

} // namespace

std::string base64Encoded(ByteView bytes) {
    std::string text;
    appendBase64(text, bytes);
    return text;
}

void appendBase64(std::string& text, ByteView bytes) {
    std::size_t end = text.size();
    text.resize(end + base64Length(bytes.size()));
    while (!bytes.empty()) {
        const std::size_t length = std::min(kGroupBytes, bytes.size());
        const auto characters = encodedGroup(bytes.first(length));
        std::copy(characters.begin(), characters.end(), text.begin() + static_cast<std::ptrdiff_t>(end));
        end += kGroupCharacters;
        bytes = bytes.subspan(length);
    }
}

std::size_t base64Length(std::uint64_t byteCount) {
    return static_cast<std::size_t>((byteCount + kGroupBytes - 1) / kGroupBytes * kGroupCharacters);
}

} // namespace orvane
