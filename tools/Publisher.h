#pragma once

#include "model/FileDownloadInfo.h"
#include "tools/Progress.h"
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
/// renamed, the description last. Throws `ToolError`; the folder is then as it was, save that it may be new.
///
/// A dry run does the same in a folder for temporary files and names what it would have written. Holds the
/// engine twice in memory. `progress` is called on this thread.
Publication publish(const PublishOptions& options, const ProgressHandler& progress = {});

} // namespace orvane::tools
