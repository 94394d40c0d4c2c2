#include "platform/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace orvane {

namespace {

std::uint8_t byteAt(std::string_view text, std::size_t position) {
    return static_cast<std::uint8_t>(text[position]);
}

bool inRange(std::uint8_t value, int low, int high) { return value >= low && value <= high; }

/// The admitted range of the second byte is what rules out overlong forms, surrogates and values past
/// U+10FFFF (RFC 3629, "Syntax of UTF-8 Byte Sequences").
struct SequenceForm {
    std::size_t length; ///< 0: no sequence begins with this byte
    int secondLow;
    int secondHigh;
};

SequenceForm formOf(std::uint8_t first) {
    if (first < 0x80) {
        return {1, 0, 0};
    }
    if (inRange(first, 0xC2, 0xDF)) {
        return {2, 0x80, 0xBF};
    }
    if (inRange(first, 0xE0, 0xEF)) {
        return {3, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF};
    }
    if (inRange(first, 0xF0, 0xF4)) {
        return {4, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF};
    }
    return {0, 0, 0};
}

bool isSequence(std::string_view text, std::size_t position, const SequenceForm& form) {
    if (form.length == 0 || text.size() - position < form.length) {
        return false;
    }
    if (form.length > 1 && !inRange(byteAt(text, position + 1), form.secondLow, form.secondHigh)) {
        return false;
    }
    for (std::size_t index = 2; index < form.length; ++index) {
        if (!inRange(byteAt(text, position + index), 0x80, 0xBF)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool isValidUtf8(std::string_view text) { return validUtf8Length(text) == text.size(); }

std::size_t validUtf8Length(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const SequenceForm form = formOf(byteAt(text, position));
        if (!isSequence(text, position, form)) {
            break;
        }
        position += form.length;
    }
    return position;
}

} // namespace orvane
