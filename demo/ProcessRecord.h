#pragma once

#include <string>
#include <vector>

namespace orvane::demo {

/// What a process was given by whoever started it, as JSON text: "arguments" (its name included),
/// "environment", "workingDirectory", "descriptors" (number to target), and "blockedSignals",
/// "ignoredSignals" and "caughtSignals" as hexadecimal masks. To be taken before the process opens or changes
/// anything of its own.
std::string recordOfThisProcess(const std::vector<std::string>& arguments);

} // namespace orvane::demo
