#pragma once

#include "tools/PublishOptions.h"

namespace orvane::tools {

/// The version to publish the engine under, after checking that the engine is one: a program for the chosen
/// system which, run with --version, prints a dotted version, and the one of the options if they name one.
///
/// It is run as it will be on users' machines, alone in a folder, and ended after `versionWait`; with `run`
/// off it is not started. Throws `ToolError`: for bad data, for usage when the system is a foreign one, or
/// when the file cannot be read or copied.
std::string checkedEngineVersion(const PublishOptions& options);

} // namespace orvane::tools
