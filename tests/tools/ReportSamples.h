#pragma once

#include <string>
#include <vector>

#include "log/Base64.h"
#include "platform/Bytes.h"

namespace orvane::tools {

/// A log with these lines.
inline std::string logOf(const std::vector<std::string>& lines) {
    std::string log;
    for (const std::string& line : lines) {
        log += "12:34:56: " + line + "\r\n";
    }
    return log;
}

/// The body of the crash report that a bootstrapper posts with this log.
inline std::string reportOf(const std::string& log) {
    return R"({"Product": "varlen", "Report": ")" + base64Encoded(bytesOf(log)) +
           R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";
}

} // namespace orvane::tools
