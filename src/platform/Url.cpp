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

bool hasOnlyUrlCharacters(std::string_view text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char character = text[position];
        const bool admitted = character == '%'
                                  ? isPercentEncoded(text, position)
                                  : contains(kDigitsAndLetters, character) || contains(kMarks, character);
        if (!admitted) {
            return false;
        }
    }
    return true;
}

/// Host and port, with what stands before them; empty where there is no "//" (RFC 3986, "Syntax Components").
std::string_view authorityOf(std::string_view url) {
    const std::size_t schemeEnd = url.find_first_of(":/?#");
    if (schemeEnd != std::string_view::npos && url[schemeEnd] == ':') {
        url.remove_prefix(schemeEnd + 1);
    }
    return url.starts_with("//") ? url.substr(2, url.find_first_of("/?#", 2) - 2) : std::string_view();
}

/// Brackets enclose a numeric host, which a port may follow, and stand nowhere else (RFC 3986, "Host").
bool hasBracketsOnlyAroundHost(std::string_view url) {
    const auto brackets = std::count_if(url.begin(), url.end(),
                                        [](char character) { return character == '[' || character == ']'; });
    if (brackets == 0) {
        return true;
    }
    const std::string_view authority = authorityOf(url);
    const std::string_view host = authority.substr(authority.rfind('@') + 1); // all of it without an "@"
    const std::size_t end = host.find(']');
    const bool isEnclosed = host.starts_with('[') && end != std::string_view::npos && end > 1;
    return brackets == 2 && isEnclosed && (end + 1 == host.size() || host[end + 1] == ':');
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
    const bool hasOneFragmentAtMost = std::count(text.begin(), text.end(), '#') <= 1;
    return !text.empty() && hasOnlyUrlCharacters(text) && hasOneFragmentAtMost &&
           hasBracketsOnlyAroundHost(text);
}

std::optional<platform::Error> refusalOfAddress(std::string_view url) {
    if (isOfTheOnlyScheme(url)) {
        return std::nullopt;
    }
    return platform::Error("OrvaneBootstrap.Url", 1,
                           "The address \"" + shown(url) + "\" is refused: it does not begin with https:");
}

} // namespace orvane
