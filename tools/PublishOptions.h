#pragma once

#include "tools/CommandLine.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace orvane::tools {

enum class Cipher { none, exclusiveOr, package };

struct PublishOptions {
    std::filesystem::path input;       ///< the plain engine, or the package that installs it
    std::filesystem::path plainEngine; ///< the engine that a package installs; otherwise empty
    std::string version;               ///< may be empty while the engine can be run: it then says
    std::string baseUrl;               ///< where `folder` is served, without a slash at its end
    std::string name = "varlen-setup"; ///< of the engine's file
    std::string digest = "sha256";     ///< or "md5"
    Cipher cipher = Cipher::exclusiveOr;
    std::filesystem::path folder; ///< gets a folder for the version
    std::string system;           ///< that the engine is for
    bool run = true;              ///< ask the engine for its version
    bool dryRun = false;          ///< leave the folder unchanged
    bool json = false;            ///< how to report

    std::chrono::seconds versionWait{30}; ///< longest time in which the engine must print its version

    /// Of the plain engine, as the description gives it.
    std::string url() const { return baseUrl + "/" + version + "/" + name; }
};

/// Reads the arguments after the program's name. Combinations that make no sense are refused here, before a
/// file is touched: throws `ToolError` with the status for a usage error.
PublishOptions parsePublishOptions(const Arguments& arguments);

} // namespace orvane::tools
