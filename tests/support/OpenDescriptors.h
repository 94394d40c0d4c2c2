#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace orvane::test {

/// How many descriptors this process has open. It counts one of its own, every time the same.
inline std::size_t openDescriptors() {
    using Entries = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Entries("/dev/fd/"), Entries()));
}

} // namespace orvane::test
