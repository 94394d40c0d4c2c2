#include "verify/Versions.h"

#include "platform/ProgrammingError.h"

#include <algorithm>
#include <compare>

namespace orvane {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t digitsAtStart(std::string_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
}

/// By value without computing it, so that no run is too long: without leading zeros the longer run is the
/// larger.
std::strong_ordering compareDigits(std::string_view left, std::string_view right) {
    left.remove_prefix(std::min(left.find_first_not_of('0'), left.size()));
    right.remove_prefix(std::min(right.find_first_not_of('0'), right.size()));
    if (left.size() != right.size()) {
        return left.size() <=> right.size();
    }
    return left <=> right;
}

std::strong_ordering compareNumerically(std::string_view left, std::string_view right) {
    while (!left.empty() && !right.empty()) {
        const std::size_t leftDigits = digitsAtStart(left);
        const std::size_t rightDigits = digitsAtStart(right);
        const bool bothDigits = leftDigits > 0 && rightDigits > 0;
        const std::size_t leftLength = bothDigits ? leftDigits : 1;
        const std::size_t rightLength = bothDigits ? rightDigits : 1;
        const std::string_view leftPiece = left.substr(0, leftLength);
        const std::string_view rightPiece = right.substr(0, rightLength);
        const std::strong_ordering order =
            bothDigits ? compareDigits(leftPiece, rightPiece) : leftPiece <=> rightPiece;
        if (order != std::strong_ordering::equal) {
            return order;
        }
        left.remove_prefix(leftLength);
        right.remove_prefix(rightLength);
    }
    return left.size() <=> right.size();
}

std::size_t dotsIn(std::string_view version) {
    return static_cast<std::size_t>(std::count(version.begin(), version.end(), '.'));
}

std::string continuedTo(std::size_t dots, std::string_view version) {
    std::string continued(version);
    for (std::size_t count = dotsIn(version); count < dots; ++count) {
        continued += ".0";
    }
    return continued;
}

} // namespace

ComparisonResult compareVersions(std::string_view baseVersion, std::string_view compareVersion) {
    const std::size_t dots = std::max(dotsIn(baseVersion), dotsIn(compareVersion));
    const std::strong_ordering order =
        compareNumerically(continuedTo(dots, baseVersion), continuedTo(dots, compareVersion));
    if (order == std::strong_ordering::equal) {
        return ComparisonResult::same;
    }
    return order == std::strong_ordering::less ? ComparisonResult::ascending : ComparisonResult::descending;
}

std::string majorVersion(std::string_view version) {
    const std::size_t start = version.find_first_not_of('.');
    if (start == std::string_view::npos) {
        invalidInput("a version has no first component: \"" + std::string(version) + "\"");
    }
    const std::string_view rest = version.substr(start);
    return std::string(rest.substr(0, rest.find('.')));
}

} // namespace orvane
