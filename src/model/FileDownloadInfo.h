#pragma once

#include "platform/Bytes.h"

#include <cstdint>
#include <string>

namespace orvane {

/// The vendor's description of the current engine file. Fields bear the names of their JSON keys.
struct FileDownloadInfo {
    std::string URL;      ///< of the plain engine; an enciphered one lies beside it, with a suffix
    std::string Checksum; ///< of the plain engine, lower-case hexadecimal; also the key text of "xor"
    std::string ChecksumAlgorithm;     ///< "md5" or "sha256", for both digests
    std::string EncryptedFileChecksum; ///< of the enciphered download as transferred
    std::string EncryptionAlgorithm;   ///< empty for a plain download, "xor" or "pkg"
    std::int64_t Size = 0;             ///< of the engine, in bytes
    std::string Version;

    bool operator==(const FileDownloadInfo&) const = default;
};

/// Decodes the vendor's JSON document (RFC 8259). All seven keys are required, other keys are ignored, and
/// each value must have its type: texts, and for `Size` a whole number written without fraction or exponent.
/// Values under other keys are skipped, whatever their size, depth and numbers. Besides the record it takes
/// one bit of memory for each level of nesting; time is linear. Throws `platform::Error` saying which rule
/// was broken.
FileDownloadInfo decodeFileDownloadInfo(ByteView document);

/// Where an engine enciphered by `encryptionAlgorithm` lies, seen from the plain one: "." and the cipher's
/// extension, which is empty for a cipher that is not known.
std::string encryptedFileSuffix(const std::string& encryptionAlgorithm);

} // namespace orvane
