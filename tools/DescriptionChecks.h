#pragma once

#include "model/FileDownloadInfo.h"
#include "tools/Finding.h"

#include <filesystem>
#include <optional>
#include <string>

namespace orvane::tools {

/// What bootstrappers will make of a description by itself, in the order in which they come upon it: one
/// finding at least for each of version, algorithm, digest, cipher, address and size.
Findings checkDescription(const FileDownloadInfo& info);

/// What they will make of the file they download for it. `file` is what was transferred; `workFolder` takes
/// what is decrypted of it. The engine must be a program for `system`, or for any if that is empty. Presumes
/// a description without a failure.
Findings checkTransferred(const FileDownloadInfo& info, const std::filesystem::path& file,
                          const std::filesystem::path& workFolder, const std::string& system = {});

/// The address that bootstrappers download from.
std::string transferredUrl(const FileDownloadInfo& info);

/// The digest that bootstrappers compare after the download.
const std::string& transferredDigest(const FileDownloadInfo& info);

/// The one major version whose bootstrappers take the description; none if its version has no number.
std::optional<std::string> acceptedMajorVersion(const FileDownloadInfo& info);

} // namespace orvane::tools
