#pragma once

#include "model/FileDownloadInfo.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace orvane {

class Logger;

/// Asks for the vendor's description of the current engine and decodes it; none: the log says why.
///
/// Blocks for at most `waitLimit`. An answer that is not UTF-8 is a programming error when there is a log to
/// write it to. Any thread but one that must not block.
std::optional<FileDownloadInfo> fetchFileDescription(const std::string& url, std::chrono::seconds waitLimit,
                                                     const std::shared_ptr<Logger>& logger);

} // namespace orvane
