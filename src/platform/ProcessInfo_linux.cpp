#include "platform/ProcessInfo.h"

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace orvane::platform {

std::int64_t processIdentifier() { return ::getpid(); }

std::string processName() {
    std::error_code failure;
    std::string name = std::filesystem::read_symlink("/proc/self/exe", failure).filename().string();
    if (failure) {
        return ::program_invocation_short_name;
    }
    // The kernel marks the name of a file that was removed or replaced while it runs (proc(5)).
    constexpr std::string_view kRemovedMark = " (deleted)";
    if (name.ends_with(kRemovedMark)) {
        name.resize(name.size() - kRemovedMark.size());
    }
    return name;
}

} // namespace orvane::platform
