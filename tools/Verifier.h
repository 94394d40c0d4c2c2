#pragma once

#include "model/FileDownloadInfo.h"
#include "tools/Finding.h"
#include "tools/Progress.h"
#include "tools/VerifyOptions.h"

#include <optional>

namespace orvane::tools {

struct Verification {
    /// Whether a bootstrapper of one version accepts what is published.
    struct Answer {
        std::string bootstrapper;
        bool accepts = false;
    };

    std::string url;
    std::optional<FileDownloadInfo> description; ///< once it was fetched and decoded
    Findings findings;                           ///< in the order of the checks; a failure ends them
    bool fetched = true;                         ///< false: the last finding says what could not be had
    std::vector<Answer> answers;                 ///< for the versions asked for, in their order

    bool hasFailed() const;  ///< by every bootstrapper
    bool isAccepted() const; ///< by each of those asked for
};

/// Fetches and checks a publication with the code that bootstrappers fetch and check with, and how it is
/// served. Throws `ToolError` when this machine has no room for it. `progress` may be called on another
/// thread.
Verification verify(const VerifyOptions& options, const ProgressHandler& progress = {});

/// The same for a description that no server answers with yet; the address of the options is not requested.
Verification verifyCandidate(const FileDownloadInfo& description, const VerifyOptions& options,
                             const ProgressHandler& progress = {});

} // namespace orvane::tools
