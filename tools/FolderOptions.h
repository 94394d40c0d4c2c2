#pragma once

#include "tools/CommandLine.h"
#include "tools/PublicationFolder.h"
#include "tools/VerifyOptions.h"

#include <filesystem>
#include <string>

namespace orvane::tools {

/// Of "switch".
struct SwitchOptions {
    std::string version; ///< empty to end a staged roll-out
    std::filesystem::path folder;
    Channel channel = Channel::current;
    VerifyOptions verification; ///< without an address
    bool json = false;
};

/// Of "list".
struct ListOptions {
    std::filesystem::path folder;
    bool json = false;
};

/// Of "prune".
struct PruneOptions {
    std::filesystem::path folder;
    std::size_t keep = 0;
    bool dryRun = false;
};

// Each reads the arguments after the command and throws `ToolError` with the status for a usage error.

SwitchOptions parseSwitchOptions(const Arguments& arguments);
ListOptions parseListOptions(const Arguments& arguments);
PruneOptions parsePruneOptions(const Arguments& arguments);

} // namespace orvane::tools
