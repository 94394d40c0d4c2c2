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
    bool isNew = true; ///< false: the version was published before, with the same contents
};

/// Makes the folder of one version, which must be named in the options. It is written under a temporary name,
/// an encrypted engine is checked by decrypting it the way bootstrappers do, and then it is renamed: the
/// version's folder appears complete. The same engine and options give the same bytes.
///
/// Throws `ToolError`, also when the version is already published with other contents; nothing that was
/// published has changed then. A dry run does the same in a folder for temporary files and names what it
/// would have written. Memory does not grow with the engine. `progress` is called on this thread.
Publication publish(const PublishOptions& options, const ProgressHandler& progress = {});

} // namespace orvane::tools
