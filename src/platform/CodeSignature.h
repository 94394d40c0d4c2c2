#pragma once

namespace orvane::platform {

/// Whether the kernel remembers the code signature of a file that was executed, by its inode, and kills the
/// next process started from it when the file was written over meanwhile. Such a file must be replaced by a
/// new one instead. Each platform's own answer.
bool remembersCodeSignatures();

} // namespace orvane::platform
