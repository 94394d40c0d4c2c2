#pragma once

#include "tests/support/Gate.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <thread>

namespace orvane::test {

/// How many descriptors this process has open. It counts one of its own, every time the same. A system
/// library may close one of its own meanwhile, so expect "not above", never an exact count.
inline std::size_t openDescriptors() {
    using Entries = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Entries("/dev/fd/"), Entries()));
}

/// Whether the descriptors come down to that many in time, where another thread may be the last owner of
/// some.
inline bool openDescriptorsComeDownTo(std::size_t count) {
    const auto limit = std::chrono::steady_clock::now() + kPatience;
    while (openDescriptors() > count) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

} // namespace orvane::test
