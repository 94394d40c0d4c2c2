#pragma once

#include "tools/CommandLine.h"

#include <string>
#include <vector>

namespace orvane::tools {

struct VerifyOptions {
    std::string url;                        ///< of the description
    std::vector<std::string> bootstrappers; ///< versions to answer for
    std::string authority = {};             ///< a PEM file to believe instead of the system's; may be empty
    bool json = false;                      ///< how to report
};

/// Reads the arguments after "verify". Without an address it is the one this build's bootstrapper asks,
/// without a version it is that bootstrapper's. Throws `ToolError` with the status for a usage error.
VerifyOptions parseVerifyOptions(const Arguments& arguments);

} // namespace orvane::tools
