#pragma once

#include <cstdint>
#include <string>

namespace orvane::platform {

std::int64_t processIdentifier();

/// The name of this process's executable file, without its folder.
std::string processName();

} // namespace orvane::platform
