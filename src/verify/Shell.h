#pragma once

#include <string>
#include <vector>

namespace orvane {

/// Runs a command found on the search path, the first of `args`, with the rest as its arguments, through
/// "/usr/bin/env". Blocks until it has ended and returns its exit status; a command that does not exist
/// answers env's own status, 127. That env itself cannot be started is a programming error.
int Shell(const std::vector<std::string>& args);

} // namespace orvane
