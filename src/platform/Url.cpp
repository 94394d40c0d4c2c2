#include "platform/Url.h"

#include <algorithm>
#include <string>

namespace orvane {

namespace {

constexpr std::string_view kDigitsAndLetters =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kHexadecimalDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";

constexpr std::string_view kOnlyScheme = "https:";
constexpr std::size_t kLongestShown = 1000;

bool contains(std::string_view set, char character) { return set.find(character) != std::string_view::npos; }

bool isPercentEncoded(std::string_view text, std::size_t position) {
    return position + 2 < text.size() && contains(kHexadecimalDigits, text[position + 1]) &&
           contains(kHexadecimalDigits, text[position + 2]);
}

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isOfTheOnlyScheme(std::string_view url) {
    const std::string_view scheme = url.substr(0, kOnlyScheme.size());
    return std::equal(scheme.begin(), scheme.end(), kOnlyScheme.begin(), kOnlyScheme.end(),
                      [](char given, char wanted) { return lowerCase(given) == wanted; });
}

/// A server can send us to anything; what a log shows of it is text, and not without end.
std::string shown(std::string_view url) {
    std::string text(url.substr(0, kLongestShown));
    std::replace_if(
        text.begin(), text.end(), [](char character) { return character < ' ' || character > '~'; }, '?');
    return text;
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

std::optional<platform::Error> refusalOfAddress(std::string_view url) {
    if (isOfTheOnlyScheme(url)) {
        return std::nullopt;
    }
    return platform::Error("OrvaneBootstrap.Url", 1,
                           "The address \"" + shown(url) + "\" is refused: it does not begin with https:");
}

} // namespace orvane
