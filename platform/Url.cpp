#include "platform/Url.h"

namespace orvane {

namespace {

constexpr std::string_view kDigitsAndLetters =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kHexadecimalDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";

bool contains(std::string_view set, char character) { return set.find(character) != std::string_view::npos; }

bool isPercentEncoded(std::string_view text, std::size_t position) {
    return position + 2 < text.size() && contains(kHexadecimalDigits, text[position + 1]) &&
           contains(kHexadecimalDigits, text[position + 2]);
}

} // namespace

bool parsesAsUrl(std::string_view text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char character = text[position];
        const bool admitted = character == '%'
                                  ? isPercentEncoded(text, position)
                                  : contains(kDigitsAndLetters, character) || contains(kMarks, character);
        if (!admitted) {
            return false;
        }
    }
    return !text.empty();
}

} // namespace orvane
