#include "tools/Base64Decoder.h"

#include <array>
#include <cstdint>

namespace orvane::tools {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupCharacters = 4;
constexpr std::size_t kGroupBytes = 3;
constexpr std::uint32_t kNoDigit = 0xFF000000U; ///< its bits lie above those of a whole group

constexpr std::array<std::uint32_t, 256> digitTable() {
    std::array<std::uint32_t, 256> table{};
    table.fill(kNoDigit);
    for (std::uint32_t digit = 0; digit < kAlphabet.size(); ++digit) {
        table[static_cast<unsigned char>(kAlphabet[digit])] = digit;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kDigits = digitTable();

std::uint32_t digitOf(char character) { return kDigits[static_cast<unsigned char>(character)]; }

/// Four characters, the last `padding` of which count as zero. `kNoDigit` or more if one is no digit.
std::uint32_t groupOf(std::string_view characters, std::size_t padding) {
    std::uint32_t group = 0;
    std::uint32_t wrong = 0;
    for (std::size_t index = 0; index < kGroupCharacters; ++index) {
        const std::uint32_t digit = index < kGroupCharacters - padding ? digitOf(characters[index]) : 0;
        wrong |= digit & kNoDigit;
        group = group << 6U | (digit & 0x3FU);
    }
    return group | wrong;
}

std::size_t paddingOf(std::string_view text) {
    if (text.ends_with("==")) {
        return 2;
    }
    return text.ends_with('=') ? 1 : 0;
}

} // namespace

std::optional<std::string> base64Decoded(std::string_view text) {
    if (text.size() % kGroupCharacters != 0) {
        return std::nullopt;
    }
    std::string decoded;
    decoded.reserve(text.size() / kGroupCharacters * kGroupBytes);
    for (std::size_t start = 0; start < text.size(); start += kGroupCharacters) {
        const bool isLast = start + kGroupCharacters == text.size();
        const std::size_t padding = isLast ? paddingOf(text) : 0;
        const std::uint32_t group = groupOf(text.substr(start, kGroupCharacters), padding);
        if (group >= kNoDigit) {
            return std::nullopt;
        }
        for (std::size_t index = 0; index < kGroupBytes - padding; ++index) {
            decoded += static_cast<char>(group >> (16 - 8 * index) & 0xFFU);
        }
    }
    return decoded;
}

} // namespace orvane::tools
