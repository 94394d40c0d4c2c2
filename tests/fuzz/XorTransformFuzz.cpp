/// A key text, a line feed and content: the code and the output are those of a transform byte by byte.

#include "platform/Utf8.h"
#include "tests/fuzz/Finding.h"
#include "verify/Crypto.h"

#include <algorithm>
#include <string>

namespace orvane::fuzz {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

std::optional<std::size_t> digitOf(char character) {
    const char lower =
        character >= 'A' && character <= 'F' ? static_cast<char>(character - 'A' + 'a') : character;
    const std::size_t value = kDigits.find(lower);
    return value == std::string_view::npos ? std::nullopt : std::optional(value);
}

/// One key byte; a sign may stand in the place of the first digit where the value stays in range.
std::optional<std::byte> pairOf(char first, char second) {
    const bool isSign = first == '+' || first == '-';
    const auto high = isSign ? std::optional<std::size_t>(0) : digitOf(first);
    const auto low = digitOf(second);
    if (!high || !low || (first == '-' && *low != 0)) {
        return std::nullopt;
    }
    return static_cast<std::byte>(*high * 16 + *low);
}

std::size_t charactersIn(std::string_view text) {
    std::size_t characters = 0;
    for (const char unit : text) {
        const auto byte = static_cast<unsigned char>(unit);
        characters += byte < 0x80 || byte >= 0xC0 ? 1 : 0;
    }
    return characters;
}

XorResult reference(ByteView content, std::string_view key) {
    const std::size_t characters = charactersIn(key);
    if (characters % 2 == 1) {
        return {.code = 1};
    }
    if (content.size() < characters / 2) {
        return {.code = 2};
    }
    // A character of several bytes is no digit, so whatever it is paired with makes no byte.
    if (characters != key.size()) {
        return {.code = 3};
    }
    Bytes output;
    for (std::size_t position = 0; position < content.size(); ++position) {
        const std::size_t pair = position % (key.size() / 2) * 2;
        const auto byte = pairOf(key[pair], key[pair + 1]);
        if (!byte) {
            return {.code = 3};
        }
        output.push_back(content[position] ^ *byte);
    }
    return {.code = 0, .data = output};
}

void checkKeyDigits(ByteView bytes) {
    const std::string text = hexEncodedString(bytes);
    expect(text.size() == 2 * bytes.size(), "each byte becomes two digits");
    expect(text.find_first_not_of(kDigits) == std::string::npos, "the digits are lower case");
    const Bytes zeros(bytes.size());
    const XorResult result = computeXOREncryption(ByteView(zeros), text);
    expect(result.code == 0 && std::ranges::equal(*result.data, bytes), "the digits read as their bytes");
}

void check(std::string_view input) {
    const std::string key(takeUpTo('\n', input));
    const ByteView content = bytesOf(input);
    checkKeyDigits(content);
    // A key is a text of the description. An empty one for content that is not is a programming error.
    if (!isValidUtf8(key) || (key.empty() && !content.empty())) {
        return;
    }
    const XorResult result = computeXOREncryption(content, key);
    const XorResult expected = reference(content, key);
    expect(result.code == expected.code, "the code is the first that applies");
    expect(result.data == expected.data, "each byte met the key byte of its position");
    if (result.data) {
        const XorResult again = computeXOREncryption(ByteView(*result.data), key);
        expect(again.code == 0 && std::ranges::equal(*again.data, content), "twice restores the content");
    }
    if (content.empty()) {
        expect(computeXOREncryption(std::nullopt, key).code == result.code, "absent content counts as empty");
    }
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
