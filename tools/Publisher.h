#pragma once

#include "download/FileDownloadInfo.h"
#include "tools/PublishOptions.h"

#include <filesystem>

namespace orvane::tools {

struct Publication {
    FileDownloadInfo description;
    std::filesystem::path engineFile; ///< what is transferred
    std::filesystem::path descriptionFile;
};

/// Publishes as the options say. Both files are written and checked under temporary names in the output
/// folder first, an enciphered one by deciphering it the way the installing program does; then they are
/// renamed, the description last. Throws `PublishError`; the folder is then as it was, save that it may be
/// new.
Publication publish(const PublishOptions& options);

} // namespace orvane::tools
