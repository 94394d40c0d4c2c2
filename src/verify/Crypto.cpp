#include "verify/Crypto.h"

#include "model/FileDownloadInfo.h"
#include "platform/Digest.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/ProgrammingError.h"
#include "verify/Shell.h"

#include <algorithm>
#include <iterator>

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
    return hexEncodedString(digest.final(), {});
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

/// How many bytes hold the key a whole number of times, and at least `atLeast`.
std::size_t wholeKeys(std::size_t keyLength, std::size_t atLeast) {
    return keyLength == 0 ? atLeast : (atLeast + keyLength - 1) / keyLength * keyLength;
}

/// The key written out until it fills a block that is worth a vector loop, whatever the key's length.
Bytes repeatedKey(const Bytes& key) {
    constexpr std::size_t worthwhileBlock = 16384;
    Bytes block;
    for (std::size_t left = wholeKeys(key.size(), worthwhileBlock); !key.empty() && left > 0;
         left -= key.size()) {
        block.insert(block.end(), key.begin(), key.end());
    }
    return block;
}

/// `content` begins with the key.
void transformInPlace(std::span<std::byte> content, const Bytes& block) {
    while (!content.empty()) {
        const auto piece = content.first(std::min(block.size(), content.size()));
        std::transform(piece.begin(), piece.end(), block.begin(), piece.begin(),
                       [](std::byte contentByte, std::byte blockByte) { return contentByte ^ blockByte; });
        content = content.subspan(piece.size());
    }
}

/// Each block is transformed while its copy lies in the cache, so memory is gone through once.
Bytes transformed(ByteView content, const Bytes& key) {
    const Bytes block = repeatedKey(key);
    Bytes output;
    output.reserve(content.size());
    while (!content.empty()) {
        const ByteView piece = content.first(std::min(block.size(), content.size()));
        output.insert(output.end(), piece.begin(), piece.end());
        transformInPlace(std::span(output).last(piece.size()), block);
        content = content.subspan(piece.size());
    }
    return output;
}

/// The key for so many bytes of content, or why there is none. Empty only for no content.
struct KeyForContent {
    int code = kXorSuccess;
    Bytes bytes = {};
};

KeyForContent keyForContent(std::size_t contentSize, std::string_view hexaKey) {
    const std::size_t characters = characterCount(hexaKey);
    if (characters % 2 != 0) {
        return {.code = kXorOddKey};
    }
    if (contentSize < characters / 2) {
        return {.code = kXorContentTooShort};
    }
    auto key = keyBytes(hexaKey);
    if (!key) {
        return {.code = kXorKeyNotHexadecimal};
    }
    if (key->empty() && contentSize > 0) {
        invalidInput("content cannot be deciphered with an empty key");
    }
    return {.bytes = std::move(*key)};
}

/// Does `work` on the plain engine's file. What fails for a file that was not there before was not expected
/// to.
template <typename Work>
auto surelyIf(bool isNew, Work work) {
    try {
        return work();
    } catch (const platform::Error& error) {
        if (!isNew) {
            throw;
        }
        unexpectedError("OrvaneBootstrap/crypto line 181: " + error.localizedDescription());
    }
}

/// The plain engine's file, to be written from its beginning.
class PlainEngine {
public:
    explicit PlainEngine(const std::filesystem::path& url)
        : isNew_(!platform::fileExists(url)), file_(surelyIf(isNew_, [this, &url] {
              return isNew_ ? platform::FileHandle::forWritingNew(url)
                            : platform::FileHandle::forWriting(url);
          })) {}

    void write(ByteView piece) const {
        surelyIf(isNew_, [this, piece] { file_.write(piece); });
    }

private:
    const bool isNew_;
    const platform::FileHandle file_;
};

/// As many bytes as `buffer` has room for and `left` and the file have, from the file's current position.
std::span<std::byte> nextPiece(const platform::FileHandle& file, std::span<std::byte> buffer,
                               std::uint64_t left) {
    buffer = buffer.first(std::min<std::uint64_t>(buffer.size(), left));
    return buffer.first(file.readFully(buffer));
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

std::string hexEncodedString(ByteView bytes, HexEncodingOptions options) {
    const std::string_view digits = options.upperCase ? "0123456789ABCDEF" : "0123456789abcdef";
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
    const KeyForContent key = keyForContent(bytes.size(), hexaKey);
    if (key.code != kXorSuccess) {
        return {.code = key.code};
    }
    return {.code = kXorSuccess, .data = transformed(bytes, key.bytes)};
}

int decryptXORFile(const FileDownloadInfo& downloadInfo, const std::filesystem::path& plainFileUrl,
                   const std::filesystem::path& encFileUrl) {
    const platform::FileHandle encFile = platform::FileHandle::forReading(encFileUrl);
    // A description that announces less than nothing has no content to decipher.
    auto left = static_cast<std::uint64_t>(std::max<std::int64_t>(downloadInfo.Size, 0));
    // No piece but the last ends within the key, and the first one is long enough to judge the key by.
    Bytes buffer(wholeKeys(characterCount(downloadInfo.Checksum) / 2, kReadChunk));
    auto piece = nextPiece(encFile, buffer, left);
    const KeyForContent key = keyForContent(piece.size(), downloadInfo.Checksum);
    if (key.code != kXorSuccess) {
        return key.code;
    }
    const PlainEngine plainFile(plainFileUrl);
    const Bytes block = repeatedKey(key.bytes);
    while (!piece.empty()) {
        transformInPlace(piece, block);
        plainFile.write(piece);
        left -= piece.size();
        piece = nextPiece(encFile, buffer, left);
    }
    return kXorSuccess;
}

int decryptPKGFile(const FileDownloadInfo& /*downloadInfo*/, const std::filesystem::path& encFileUrl) {
    return Shell({"installer", "-allowUntrusted", "-verboseR", "-pkg", encFileUrl, "-target", "/"});
}

int decryptEngine(const FileDownloadInfo& downloadInfo, const std::filesystem::path& plainFileUrl,
                  const std::filesystem::path& encFileUrl) {
    if (downloadInfo.EncryptionAlgorithm == "xor") {
        return decryptXORFile(downloadInfo, plainFileUrl, encFileUrl);
    }
    if (downloadInfo.EncryptionAlgorithm == "pkg") {
        return decryptPKGFile(downloadInfo, encFileUrl);
    }
    return 0;
}

} // namespace orvane
