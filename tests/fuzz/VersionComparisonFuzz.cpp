/// Three versions, one a line: compared with each other, with themselves and with a second comparison that
/// keeps the components' pieces.

#include "tests/fuzz/Finding.h"
#include "verify/Versions.h"

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::fuzz {
namespace {

/// Digits as one piece without its leading zeros, any other byte as a piece of its own.
struct Piece {
    bool isNumber;
    std::string text;

    /// Of a number against a byte, the first digit decides, and all digits stand at the same side of it.
    static int compare(const Piece& left, const Piece& right) {
        if (left.isNumber && right.isNumber && left.text.size() != right.text.size()) {
            return left.text.size() < right.text.size() ? -1 : 1;
        }
        const std::string one = left.isNumber && !right.isNumber ? "0" : left.text;
        const std::string other = right.isNumber && !left.isNumber ? "0" : right.text;
        return one.compare(other);
    }
};

std::vector<Piece> piecesOf(const std::string& version) {
    std::vector<Piece> pieces;
    bool goesOn = false;
    for (const char character : version) {
        const bool isDigit = character >= '0' && character <= '9';
        if (!isDigit || !goesOn) {
            pieces.push_back({isDigit, ""});
        }
        // A leading zero is not kept, so that the value zero is the empty text.
        if (!isDigit || character != '0' || !pieces.back().text.empty()) {
            pieces.back().text += character;
        }
        goesOn = isDigit;
    }
    return pieces;
}

std::ptrdiff_t dotsIn(const std::string& version) { return std::count(version.begin(), version.end(), '.'); }

int reference(std::string left, std::string right) {
    while (dotsIn(left) < dotsIn(right)) {
        left += ".0";
    }
    while (dotsIn(right) < dotsIn(left)) {
        right += ".0";
    }
    const std::vector<Piece> leftPieces = piecesOf(left);
    const std::vector<Piece> rightPieces = piecesOf(right);
    for (std::size_t index = 0; index < std::min(leftPieces.size(), rightPieces.size()); ++index) {
        if (const int order = Piece::compare(leftPieces[index], rightPieces[index]); order != 0) {
            return order < 0 ? -1 : 1;
        }
    }
    if (leftPieces.size() == rightPieces.size()) {
        return 0;
    }
    return leftPieces.size() < rightPieces.size() ? -1 : 1;
}

int compared(const std::string& left, const std::string& right) {
    return static_cast<int>(compareVersions(left, right));
}

void checkOne(const std::string& version) {
    expect(compared(version, version) == 0, "a version is the same as itself");
    expect(compared(version, version + ".0") == 0, "another component 0 changes nothing");
    // A version without any component has no major version, and asking for it is a programming error.
    if (version.find_first_not_of('.') == std::string::npos) {
        return;
    }
    const std::string major = majorVersion(version);
    expect(!major.empty() && major.find('.') == std::string::npos, "a major version is one component");
    expect(majorVersion("." + version + ".1") == major, "what stands around it changes no major version");
}

void checkTwo(const std::string& left, const std::string& right) {
    expect(compared(left, right) == reference(left, right), "both comparisons agree");
    expect(compared(left, right) == -compared(right, left), "the other way round the order is reversed");
}

/// Only among versions of equally many components, since others are continued differently for each other.
void checkThree(const std::string& first, const std::string& second, const std::string& third) {
    if (dotsIn(first) != dotsIn(second) || dotsIn(second) != dotsIn(third)) {
        return;
    }
    if (compared(first, second) <= 0 && compared(second, third) <= 0) {
        expect(compared(first, third) <= 0, "older than an older one is older");
    }
}

void check(std::string_view lines) {
    const std::string first(takeUpTo('\n', lines));
    const std::string second(takeUpTo('\n', lines));
    const std::string third(lines);
    for (const std::string& version : {first, second, third}) {
        checkOne(version);
    }
    checkTwo(first, second);
    checkTwo(second, third);
    checkTwo(first, third);
    checkThree(first, second, third);
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
