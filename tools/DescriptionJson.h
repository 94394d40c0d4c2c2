#pragma once

#include "model/FileDownloadInfo.h"

#include <nlohmann/json.hpp>
#include <string>

namespace orvane::tools {

/// The seven keys in the order of the record.
inline nlohmann::ordered_json jsonOf(const FileDownloadInfo& info) {
    return {
        {"URL", info.URL},
        {"Checksum", info.Checksum},
        {"ChecksumAlgorithm", info.ChecksumAlgorithm},
        {"EncryptedFileChecksum", info.EncryptedFileChecksum},
        {"EncryptionAlgorithm", info.EncryptionAlgorithm},
        {"Size", info.Size},
        {"Version", info.Version},
    };
}

/// The document that bootstrappers are answered with.
inline std::string documentOf(const FileDownloadInfo& info) { return jsonOf(info).dump(2) + "\n"; }

} // namespace orvane::tools
