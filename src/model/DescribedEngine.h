#pragma once

#include "model/FileDownloadInfo.h"

#include <filesystem>
#include <string>

namespace orvane {

/// The engine of a run: where it lies or will lie, and what the vendor says of it.
struct DescribedEngine {
    std::filesystem::path location;
    FileDownloadInfo info;
    bool isEncrypted = false; ///< how it is downloaded

    /// Where the download goes: the engine's own place, or, enciphered, the file beside it with the cipher's
    /// extension. An enciphered one whose place is not a URL is a programming error.
    std::filesystem::path downloadLocation() const;

    /// What is downloaded; that it is not a URL is a programming error.
    std::string downloadUrl() const;

    /// The described digest of the download.
    const std::string& downloadChecksum() const {
        return isEncrypted ? info.EncryptedFileChecksum : info.Checksum;
    }
};

} // namespace orvane
