#pragma once

#include "model/FileDownloadInfo.h"

#include <nlohmann/json.hpp>

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

} // namespace orvane::tools
