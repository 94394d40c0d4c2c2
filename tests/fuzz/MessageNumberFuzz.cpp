/// Any text as a number: equal to one that is read digit by digit.

#include "sender/MessageNumber.h"
#include "tests/fuzz/Finding.h"

#include <algorithm>
#include <limits>
#include <string>

namespace orvane::fuzz {
namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Counts up in the unsigned range and stops before it would leave the signed one.
std::optional<std::int64_t> reference(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || !std::all_of(text.begin(), text.end(), isDigit)) {
        return std::nullopt;
    }
    const std::uint64_t limit = negative ? kLargest + 1 : kLargest;
    std::uint64_t magnitude = 0;
    for (const char digit : text) {
        const auto value = static_cast<std::uint64_t>(digit - '0');
        if (magnitude > (limit - value) / 10) {
            return std::nullopt;
        }
        magnitude = magnitude * 10 + value;
    }
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

void check(std::string_view text) {
    const auto number = messageNumber(text);
    expect(number == reference(text), "the number is the one that the digits spell");
    if (!number) {
        return;
    }
    expect(messageNumber(std::to_string(*number)) == number, "a number written out reads as itself");
    for (const char* around : {" ", "\n", "\t", ".", "x", "+", "-"}) {
        expect(!messageNumber(std::string(text) + around), "nothing may follow a number");
    }
    expect(!messageNumber(" " + std::string(text)), "no blank may precede a number");
    expect(!messageNumber(std::string(text) + '\0'), "no NUL may follow a number");
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
