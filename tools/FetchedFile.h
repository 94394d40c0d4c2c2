#pragma once

#include "platform/Error.h"
#include "tools/Progress.h"

#include <filesystem>
#include <optional>
#include <string>

namespace orvane::tools {

/// Streams what lies at an HTTPS address into a new file, with the product's limit on a server's silence, and
/// waits for the end. Like the product it looks at no status: a page that says "not found" is fetched too.
/// Answers why it failed, if it did. `progress` is called on another thread, one call at a time, and not
/// after the return.
std::optional<platform::Error> fetchFile(const std::string& url, const std::filesystem::path& file,
                                         const ProgressHandler& progress);

} // namespace orvane::tools
