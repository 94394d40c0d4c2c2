#pragma once

#include "tools/CommandLine.h"

#include <filesystem>
#include <string>

namespace orvane::tools {

enum class Cipher { none, exclusiveOr, package };

struct PublishOptions {
    std::filesystem::path input;       ///< the plain engine, or the package that installs it
    std::filesystem::path plainEngine; ///< the engine that a package installs; otherwise empty
    std::string version;
    std::string url;    ///< of the plain engine, as the description gives it
    std::string name;   ///< the URL's last component
    std::string digest; ///< "md5" or "sha256"
    Cipher cipher = Cipher::none;
    std::filesystem::path output; ///< folder
    bool dryRun = false;          ///< leaves the output folder as it is
    bool json = false;            ///< how to report
};

/// Reads the arguments after the program's name. Everything that makes no sense by itself is refused here,
/// before a file is touched: throws `ToolError` with the status for a usage error.
PublishOptions parsePublishOptions(const Arguments& arguments);

} // namespace orvane::tools
