#pragma once

#include "tools/CommandLine.h"

#include <string>
#include <vector>

namespace orvane::tools {

struct VerifyOptions {
    std::string url = {};                        ///< of the description
    std::vector<std::string> bootstrappers = {}; ///< versions to answer for
    std::string authority = {}; ///< a PEM file to trust instead of the system's; may be empty
    std::string system = {};    ///< that the engine must be for; empty for any
    bool json = false;          ///< how to report
};

/// Reads the arguments after "verify". Without an address it is the one this build's bootstrapper asks,
/// without a version it is that bootstrapper's. Throws `ToolError` with the status for a usage error.
VerifyOptions parseVerifyOptions(const Arguments& arguments);

/// The options that "verify" shares with other commands.
void addVerifyOptions(CommandLine& line, VerifyOptions& options);

/// To be called after reading: replaces ranges by the versions in them, and no version by this build's.
void completeVerifyOptions(VerifyOptions& options);

/// What a range such as "13.4-15.1" stands for: both ends, and each major version between them. A single
/// version stands for itself. Throws `ToolError` with the status for a usage error.
std::vector<std::string> versionsInRange(const std::string& range);

} // namespace orvane::tools
