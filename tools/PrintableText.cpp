#include "tools/PrintableText.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace orvane::tools {
namespace {

/// One character of UTF-8; of `length` 0 if the bytes are not valid.
struct Character {
    std::uint32_t code = 0;
    std::size_t length = 0;
};

std::uint32_t byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

std::size_t lengthByFirstByte(std::uint32_t byte) {
    if (byte < 0x80) {
        return 1;
    }
    if (byte >= 0xC2 && byte < 0xE0) {
        return 2;
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return 3;
    }
    return byte >= 0xF0 && byte < 0xF5 ? 4 : 0;
}

Character firstCharacter(std::string_view text) {
    static constexpr std::array<std::uint32_t, 5> kFirstBits{0, 0x7F, 0x1F, 0x0F, 0x07};
    static constexpr std::array<std::uint32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = lengthByFirstByte(byteAt(text, 0));
    if (length == 0 || length > text.size()) {
        return {};
    }
    std::uint32_t code = byteAt(text, 0) & kFirstBits.at(length);
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(text, index) & 0xC0U) != 0x80) {
            return {};
        }
        code = code << 6U | (byteAt(text, index) & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return code < kSmallest.at(length) || isSurrogate || code > 0x10FFFF ? Character{}
                                                                         : Character{code, length};
}

/// Control characters, what changes the direction of writing, breaks lines, or has no width.
bool isUnprintable(std::uint32_t code) {
    const bool isControl = (code < 0x20 && code != '\t' && code != '\n') || (code >= 0x7F && code < 0xA0);
    const bool isFormat = code == 0xAD || code == 0x61C || code == 0x180E ||
                          (code >= 0x200B && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
                          (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF ||
                          (code >= 0xFFF9 && code <= 0xFFFB) || (code >= 0xE0000 && code <= 0xE007F);
    return isControl || isFormat;
}

void appendEscape(std::string& shown, const char* format, std::uint32_t value) {
    std::array<char, 16> escape{};
    std::snprintf(escape.data(), escape.size(), format, static_cast<unsigned>(value));
    shown += escape.data();
}

} // namespace

std::string printable(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        const std::size_t length = character.length == 0 ? 1 : character.length;
        if (character.length == 0) {
            appendEscape(shown, "\\x%02x", byteAt(text, 0));
        } else if (isUnprintable(character.code)) {
            if (!text.starts_with("\r\n")) {
                appendEscape(shown, character.code < 0x80 ? "\\x%02x" : "\\u{%x}", character.code);
            }
        } else {
            shown += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return shown;
}

std::string printableLine(std::string_view text) {
    std::string line;
    for (const char character : printable(text)) {
        if (character == '\n') {
            line += "\\x0a";
        } else {
            line += character;
        }
    }
    return line;
}

std::string htmlEscaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

} // namespace orvane::tools
