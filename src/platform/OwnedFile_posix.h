#pragma once

#include "platform/Descriptor_posix.h"

#include <filesystem>

namespace orvane::platform {

enum class OldContents { kept, dropped };

/// Opens the file at `path` for writing from its beginning, so that only this process's user can write to it
/// as well.
///
/// A regular file of another user, one with the set-user-ID or set-group-ID bit, or one that group or others
/// may write to is replaced by a new file of this user, without these permissions and with the old contents
/// as `oldContents` says. It keeps its name, and a link that leads to it keeps leading to it. To change owner
/// and permissions in place would not do: another user's descriptor or hard link would still reach the file.
///
/// Where the kernel remembers code signatures (`remembersCodeSignatures`), a regular file that is not empty
/// is always replaced, since it may have been executed.
///
/// `flags` are further flags of open(2), such as O_CREAT. Throws `Error`; the old
/// file is then as it was.
Descriptor openOwnedFile(const std::filesystem::path& path, int flags, OldContents oldContents);

} // namespace orvane::platform
