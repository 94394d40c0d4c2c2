#pragma once

#include "platform/Bytes.h"

#include <cstddef>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

/// A descriptor that is closed with the object.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

    /// The caller closes it from now on.
    int release() { return std::exchange(number_, -1); }

private:
    int number_ = -1;
};

/// Above some 2 GiB a single read or write is refused or cut short, depending on the platform.
inline constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

/// open(2) with O_CLOEXEC, and for a new file the permissions 0666 less the umask. Throws `Error`.
Descriptor openDescriptor(const std::filesystem::path& path, int flags);

/// Writes all of `data`. Throws `Error`, which names `path`.
void writeAll(int descriptor, ByteView data, const std::filesystem::path& path);

} // namespace orvane::platform
