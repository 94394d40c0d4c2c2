#pragma once

#include "platform/Bytes.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

struct FileDownloadInfo;

/// The digest of a file as lower-case hexadecimal text, by the algorithm's exact name: "md5" or "sha256".
///
/// The empty text stands for no digest: for any other name and for a missing file. Reads 1 MiB at a time.
/// Throws `platform::Error` when the file is there but cannot be read. Any thread.
std::string computeFileChecksum(const std::filesystem::path& url, std::string_view checksumAlgorithm);
std::string md5File(const std::filesystem::path& url);
std::string sha256File(const std::filesystem::path& url);

/// What `hexEncodedString` can do otherwise; nothing for the program's own digests.
struct HexEncodingOptions {
    bool upperCase = false;
};

/// Two digits a byte, most significant first; in lower case unless told otherwise.
std::string hexEncodedString(ByteView bytes, HexEncodingOptions options = {});

/// Codes of the XOR transform.
inline constexpr int kXorSuccess = 0;
inline constexpr int kXorOddKey = 1;          ///< the key text has an odd number of characters
inline constexpr int kXorContentTooShort = 2; ///< fewer content bytes than key bytes
inline constexpr int kXorKeyNotHexadecimal = 3;

struct XorResult {
    int code = kXorSuccess;
    std::optional<Bytes> data = {}; ///< only on success
};

/// Enciphers and deciphers alike: each content byte XOR the key byte of its position, the key repeating. The
/// key text holds two hexadecimal digits a byte; a sign in place of a pair's first digit is accepted, so "+f"
/// is 15 and "-0" is 0. Absent content counts as empty. An empty key for content that is not is a programming
/// error.
XorResult computeXOREncryption(std::optional<ByteView> content, std::string_view hexaKey);

/// Deciphers the first `downloadInfo.Size` bytes of the file at `encFileUrl` with the plain engine's digest
/// as the key, into `plainFileUrl`. Returns the transform's code; only on 0 anything was written. Works
/// through some 1 MiB at a time, so memory does not grow with the engine.
///
/// An existing plain file is written over from its beginning and not truncated: what was longer keeps its
/// tail, which the digest check then finds. Throws `platform::Error` when a file cannot be opened, read or
/// written over; a new plain file that cannot be written is a programming error.
int decryptXORFile(const FileDownloadInfo& downloadInfo, const std::filesystem::path& plainFileUrl,
                   const std::filesystem::path& encFileUrl);

/// Has the system's package installer install the package at `encFileUrl`; returns its exit status. Blocks
/// until it has ended. The package puts the engine in its place itself.
int decryptPKGFile(const FileDownloadInfo& downloadInfo, const std::filesystem::path& encFileUrl);

/// Makes the engine of its enciphered download, by the described cipher. Returns the cipher's code, 0 for
/// success, or 0 for a cipher that is not known. Throws as the ciphers do.
int decryptEngine(const FileDownloadInfo& downloadInfo, const std::filesystem::path& plainFileUrl,
                  const std::filesystem::path& encFileUrl);

} // namespace orvane
