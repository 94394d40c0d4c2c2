#pragma once

namespace orvane::platform {

/// Makes the process independent of how it was started. The first call of `main`, before any other thread or
/// file.
///
/// - Standard input, output and error are open: a closed one becomes /dev/null. Otherwise the next opened
/// file or socket
///   would take its number, and lines would be printed into it.
/// - SIGPIPE and SIGXFSZ do not end the process: the write fails instead. Child processes start with the
/// defaults.
/// - Group and others never get write permission for what this process creates. Child processes inherit that.
void prepareProcess();

} // namespace orvane::platform
