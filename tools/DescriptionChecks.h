#pragma once

#include "model/FileDownloadInfo.h"
#include "tools/Finding.h"

#include <filesystem>
#include <optional>

namespace orvane::tools {

/// What bootstrappers will make of a description by itself, in the order in which they come upon it: one
/// finding at least for each of version, algorithm, digest, cipher, address and size.
Findings checkDescription(const FileDownloadInfo& info);

/// What they will make of the file they download for it. `file` is what was transferred; `workFolder` takes
/// what is deciphered of it. Presumes a description without a failure.
Findings checkTransferred(const FileDownloadInfo& info, const std::filesystem::path& file,
                          const std::filesystem::path& workFolder);

/// The address that bootstrappers download from.
std::string transferredUrl(const FileDownloadInfo& info);

/// The one major version whose bootstrappers take the description; none if its version has no number.
std::optional<std::string> acceptedMajorVersion(const FileDownloadInfo& info);

} // namespace orvane::tools
