#pragma once

#include <filesystem>

namespace orvane {

/// Makes an engine file runnable (0744) if this user cannot execute it: neither a download nor the
/// deciphering sets the permission. Throws `platform::Error`.
void ensureExecutable(const std::filesystem::path& engine);

} // namespace orvane
