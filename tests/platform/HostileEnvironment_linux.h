#pragma once

#include <filesystem>

namespace orvane::test {

/// Where this test program's environment asks for the session keys to be written.
std::filesystem::path keyLogFile();

} // namespace orvane::test
