#include "platform/Descriptor_posix.h"

#include "platform/Error.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace orvane::platform {

namespace {

constexpr mode_t kNewFilePermissions = 0666; // less the umask

} // namespace

Descriptor openDescriptor(const std::filesystem::path& path, int flags) {
    for (;;) {
        Descriptor file(::open(path.c_str(), flags | O_CLOEXEC, kNewFilePermissions));
        if (file.isOpen()) {
            return file;
        }
        if (errno != EINTR) {
            throw posixError(errno, path.string());
        }
    }
}

void writeAll(int descriptor, ByteView data, const std::filesystem::path& path) {
    while (!data.empty()) {
        const ssize_t written = ::write(descriptor, data.data(), std::min(data.size(), kLargestTransfer));
        if (written >= 0) {
            data = data.subspan(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw posixError(errno, path.string());
        }
    }
}

} // namespace orvane::platform
