#pragma once

#include <string>

namespace orvane::platform {

/// Tells the system that work the user asked for is under way, from now until the process ends: the machine
/// does not go to sleep by itself meanwhile. `reason` is for the system's own lists of what keeps a machine
/// awake.
///
/// Called once, on the main thread. Returns at once and reports nothing: a system that cannot be told, or
/// that does not answer, changes nothing for the caller.
void beginActivity(const std::string& reason);

} // namespace orvane::platform
