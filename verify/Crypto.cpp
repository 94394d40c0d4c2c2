#include "verify/Crypto.h"

#include "download/FileDownloadInfo.h"
#include "platform/Digest.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/ProgrammingError.h"
#include "verify/Shell.h"

#include <algorithm>

namespace orvane {

namespace {

constexpr std::size_t kReadChunk = std::size_t{1} << 20;

std::string fileDigest(const std::filesystem::path& url, platform::DigestAlgorithm algorithm) {
    if (!platform::fileExists(url)) {
        return {};
    }
    const platform::FileHandle file = platform::FileHandle::forReading(url);
    platform::Digest digest(algorithm);
    Bytes chunk(kReadChunk);
    // A short read is not yet the end of the file.
    while (const std::size_t count = file.read(chunk)) {
        digest.update(ByteView(chunk).first(count));
    }
    return hexEncodedString(digest.final());
}

/// Unicode characters, not bytes: continuation bytes of UTF-8 do not count.
std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char unit) {
        return (static_cast<unsigned char>(unit) & 0xC0U) != 0x80U;
    }));
}

std::optional<unsigned> hexadecimalDigit(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<unsigned>(character - '0');
    }
    if (character >= 'a' && character <= 'f') {
        return static_cast<unsigned>(character - 'a' + 10);
    }
    if (character >= 'A' && character <= 'F') {
        return static_cast<unsigned>(character - 'A' + 10);
    }
    return std::nullopt;
}

/// One unsigned 8-bit number in base 16. A leading sign is part of a number; below zero only "-0" is in
/// range.
std::optional<std::byte> keyByte(char first, char second) {
    const auto low = hexadecimalDigit(second);
    if (!low) {
        return std::nullopt;
    }
    if (first == '+' || (first == '-' && *low == 0)) {
        return static_cast<std::byte>(*low);
    }
    const auto high = hexadecimalDigit(first);
    if (!high) {
        return std::nullopt;
    }
    return static_cast<std::byte>(*high << 4U | *low);
}

std::optional<Bytes> keyBytes(std::string_view hexaKey) {
    Bytes key;
    for (std::size_t position = 0; position + 1 < hexaKey.size(); position += 2) {
        const auto byte = keyByte(hexaKey[position], hexaKey[position + 1]);
        if (!byte) {
            return std::nullopt;
        }
        key.push_back(*byte);
    }
    return key;
}

/// The key written out until it fills a block that is worth a vector loop, whatever the key's length.
Bytes repeatedKey(const Bytes& key) {
    constexpr std::size_t worthwhileBlock = 2048;
    Bytes block;
    do {
        block.insert(block.end(), key.begin(), key.end());
    } while (block.size() < worthwhileBlock);
    return block;
}

Bytes transformed(ByteView content, const Bytes& key) {
    const Bytes block = repeatedKey(key);
    Bytes output(content.size());
    for (std::size_t start = 0; start < content.size(); start += block.size()) {
        const std::size_t count = std::min(block.size(), content.size() - start);
        std::transform(content.begin() + static_cast<std::ptrdiff_t>(start),
                       content.begin() + static_cast<std::ptrdiff_t>(start + count), block.begin(),
                       output.begin() + static_cast<std::ptrdiff_t>(start),
                       [](std::byte contentByte, std::byte blockByte) { return contentByte ^ blockByte; });
    }
    return output;
}

void writeNewEngine(const std::filesystem::path& plainFileUrl, ByteView engine) {
    try {
        platform::writeNewFile(plainFileUrl, engine);
    } catch (const platform::Error& error) {
        programmingError("OrvaneBootstrap/crypto line 181: unexpected error: " +
                         error.localizedDescription());
    }
}

} // namespace

std::string computeFileChecksum(const std::filesystem::path& url, std::string_view checksumAlgorithm) {
    if (checksumAlgorithm == "md5") {
        return md5File(url);
    }
    if (checksumAlgorithm == "sha256") {
        return sha256File(url);
    }
    return {};
}

std::string md5File(const std::filesystem::path& url) {
    return fileDigest(url, platform::DigestAlgorithm::md5);
}

std::string sha256File(const std::filesystem::path& url) {
    return fileDigest(url, platform::DigestAlgorithm::sha256);
}

std::string hexEncodedString(ByteView bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<unsigned>(byte);
        text += digits[value >> 4U];
        text += digits[value & 0xFU];
    }
    return text;
}

XorResult computeXOREncryption(std::optional<ByteView> content, std::string_view hexaKey) {
    const ByteView bytes = content.value_or(ByteView());
    const std::size_t characters = characterCount(hexaKey);
    if (characters % 2 != 0) {
        return {.code = kXorOddKey};
    }
    if (bytes.size() < characters / 2) {
        return {.code = kXorContentTooShort};
    }
    const auto key = keyBytes(hexaKey);
    if (!key) {
        return {.code = kXorKeyNotHexadecimal};
    }
    if (bytes.empty()) {
        return {.code = kXorSuccess, .data = Bytes()};
    }
    if (key->empty()) {
        programmingError("content cannot be deciphered with an empty key");
    }
    return {.code = kXorSuccess, .data = transformed(bytes, *key)};
}

int decryptXORFile(const FileDownloadInfo& downloadInfo, const std::filesystem::path& plainFileUrl,
                   const std::filesystem::path& encFileUrl) {
    const platform::FileHandle encFile = platform::FileHandle::forReading(encFileUrl);
    // A description that announces less than nothing has no content to decipher.
    const auto size = static_cast<std::uint64_t>(std::max<std::int64_t>(downloadInfo.Size, 0));
    const Bytes content = encFile.readUpToCount(size);
    const XorResult result = computeXOREncryption(content, downloadInfo.Checksum);
    if (result.code != kXorSuccess) {
        return result.code;
    }
    if (platform::fileExists(plainFileUrl)) {
        platform::FileHandle::forWriting(plainFileUrl).write(*result.data);
    } else {
        writeNewEngine(plainFileUrl, *result.data);
    }
    return kXorSuccess;
}

int decryptPKGFile(const FileDownloadInfo& /*downloadInfo*/, const std::filesystem::path& encFileUrl) {
    return Shell({"installer", "-allowUntrusted", "-verboseR", "-pkg", encFileUrl, "-target", "/"});
}

} // namespace orvane
