#include "model/JsonMembers.h"

#include <charconv>
#include <cstdint>
#include <vector>

namespace orvane {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kHexDigits = 4; ///< after \u

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// The number that the four hexadecimal digits at `position` give.
std::optional<std::uint32_t> hexNumber(std::string_view text, std::size_t position) {
    const std::string_view digits = text.substr(position, kHexDigits);
    std::uint32_t number = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    const bool isWhole = failure == std::errc() && end == digits.data() + kHexDigits;
    return isWhole ? std::optional(number) : std::nullopt;
}

bool isHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// Goes through the document once; each `read…` leaves the position behind what it has read, or at the byte
/// that is wrong and answers false.
class JsonReader {
public:
    JsonReader(std::string_view text, const JsonMemberHandler& handler) : text_(text), handler_(handler) {
        if (text_.starts_with(kByteOrderMark)) {
            position_ = kByteOrderMark.size();
        }
    }

    JsonOutcome read() {
        skipBlanks();
        const bool isObject = isNext('{');
        if (readValues() && position_ == text_.size()) {
            return {.errorPosition = std::nullopt, .isObject = isObject};
        }
        return {.errorPosition = position_};
    }

private:
    /// The document's value with all that it holds, and the blanks behind it.
    bool readValues() {
        do {
            if (!readValueOrItsBeginning()) {
                return false;
            }
        } while (!levels_.empty());
        return true;
    }

    /// One scalar value, or the beginning of a container; then as many container ends as follow, up to where
    /// the next value begins or the document ends.
    bool readValueOrItsBeginning() {
        const std::size_t start = position_;
        if (isNext('{') || isNext('[')) {
            report({});
            levels_.push_back(isNext('{'));
            ++position_;
            skipBlanks();
            return isNext(closing()) ? readEnds() : readKeyInObject();
        }
        JsonValue::Kind kind = JsonValue::Kind::other;
        if (isNext('"')) {
            kind = JsonValue::Kind::text;
            if (!readString()) {
                return false;
            }
            report({kind, text_.substr(start + 1, position_ - start - 2)});
        } else if (isNext('-') || (position_ < text_.size() && isDigit(text_[position_]))) {
            kind = JsonValue::Kind::number;
            if (!readNumber()) {
                return false;
            }
            report({kind, text_.substr(start, position_ - start)});
        } else {
            if (!readLiteral("true") && !readLiteral("false") && !readLiteral("null")) {
                return false;
            }
            report({});
        }
        return readEnds();
    }

    bool readEnds() {
        skipBlanks();
        while (!levels_.empty()) {
            if (take(',')) {
                skipBlanks();
                return readKeyInObject();
            }
            if (!take(closing())) {
                return false;
            }
            levels_.pop_back();
            skipBlanks();
        }
        return true;
    }

    /// Up to the value; nothing in an array.
    bool readKeyInObject() {
        if (!levels_.back()) {
            return true;
        }
        const std::size_t start = position_;
        if (!isNext('"') || !readString()) {
            return false;
        }
        if (levels_.size() == 1) {
            key_ = text_.substr(start + 1, position_ - start - 2);
        }
        skipBlanks();
        if (!take(':')) {
            return false;
        }
        skipBlanks();
        return true;
    }

    bool readString() {
        ++position_;
        while (position_ < text_.size() && text_[position_] != '"') {
            const auto unit = static_cast<unsigned char>(text_[position_]);
            if (unit < 0x20 || (unit == '\\' && !readEscape())) {
                return false;
            }
            if (unit != '\\') {
                ++position_;
            }
        }
        return take('"');
    }

    bool readEscape() {
        constexpr std::string_view letters = "\"\\/bfnrt";
        ++position_;
        if (position_ < text_.size() && letters.find(text_[position_]) != std::string_view::npos) {
            ++position_;
            return true;
        }
        const auto unit = readUnicodeEscape();
        if (!unit || isLowSurrogate(*unit)) {
            return false;
        }
        if (!isHighSurrogate(*unit)) {
            return true;
        }
        const auto second = take('\\') ? readUnicodeEscape() : std::nullopt;
        return second && isLowSurrogate(*second);
    }

    std::optional<std::uint32_t> readUnicodeEscape() {
        if (!take('u')) {
            return std::nullopt;
        }
        const auto unit = hexNumber(text_, position_);
        if (unit) {
            position_ += kHexDigits;
        }
        return unit;
    }

    bool readNumber() {
        take('-');
        if (!take('0') && !readDigits()) {
            return false;
        }
        if (take('.') && !readDigits()) {
            return false;
        }
        if (take('e') || take('E')) {
            static_cast<void>(take('+') || take('-'));
            return readDigits();
        }
        return true;
    }

    bool readDigits() {
        const std::size_t start = position_;
        while (position_ < text_.size() && isDigit(text_[position_])) {
            ++position_;
        }
        return position_ > start;
    }

    bool readLiteral(std::string_view literal) {
        if (!text_.substr(position_).starts_with(literal)) {
            return false;
        }
        position_ += literal.size();
        return true;
    }

    void skipBlanks() {
        while (isNext(' ') || isNext('\t') || isNext('\r') || isNext('\n')) {
            ++position_;
        }
    }

    bool isNext(char character) const { return position_ < text_.size() && text_[position_] == character; }

    bool take(char character) {
        const bool isThere = isNext(character);
        position_ += isThere ? 1 : 0;
        return isThere;
    }

    char closing() const { return levels_.back() ? '}' : ']'; }

    void report(const JsonValue& value) const {
        if (levels_.size() == 1 && levels_.front()) {
            handler_(key_, value);
        }
    }

    const std::string_view text_;
    const JsonMemberHandler& handler_;
    std::size_t position_ = 0;
    std::vector<bool> levels_; ///< true for an object, false for an array; one bit each
    std::string_view key_;     ///< of the outermost object's member at hand
};

void appendUtf8(std::string& text, std::uint32_t character) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto continuation = [character](unsigned shift) { return 0x80U | ((character >> shift) & 0x3FU); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | character >> 6U);
        append(continuation(0));
    } else if (character < 0x10000) {
        append(0xE0U | character >> 12U);
        append(continuation(6));
        append(continuation(0));
    } else {
        append(0xF0U | character >> 18U);
        append(continuation(12));
        append(continuation(6));
        append(continuation(0));
    }
}

char escapedCharacter(char letter) {
    switch (letter) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return letter;
    }
}

} // namespace

JsonOutcome readJsonMembers(std::string_view document, const JsonMemberHandler& handler) {
    return JsonReader(document, handler).read();
}

std::string jsonText(std::string_view written) {
    std::string text;
    text.reserve(written.size());
    for (std::size_t position = 0; position < written.size(); ++position) {
        if (written[position] != '\\') {
            text += written[position];
            continue;
        }
        ++position;
        if (written[position] != 'u') {
            text += escapedCharacter(written[position]);
            continue;
        }
        std::uint32_t character = hexNumber(written, position + 1).value_or(0);
        position += kHexDigits;
        if (isHighSurrogate(character)) {
            const std::uint32_t second = hexNumber(written, position + 3).value_or(0); // behind "\u"
            character = 0x10000 + ((character - 0xD800) << 10U) + (second - 0xDC00);
            position += kHexDigits + 2;
        }
        appendUtf8(text, character);
    }
    return text;
}

} // namespace orvane
