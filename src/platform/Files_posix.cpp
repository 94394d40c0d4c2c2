#include "platform/Files.h"

#include "platform/Descriptor_posix.h"
#include "platform/Error.h"
#include "platform/OwnedFile_posix.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

} // namespace

bool fileExists(const std::filesystem::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool isExecutableFile(const std::filesystem::path& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

void setPosixPermissions(const std::filesystem::path& path, unsigned permissions) {
    if (::chmod(path.c_str(), static_cast<mode_t>(permissions)) != 0) {
        throw posixError(errno, path.string());
    }
}

void createDirectoryWithIntermediates(const std::filesystem::path& path) {
    std::error_code failure;
    std::filesystem::create_directories(path, failure);
    if (failure) {
        throw posixError(failure.value(), path.string());
    }
}

void removeItem(const std::filesystem::path& path) {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (failure) {
        throw posixError(failure.value(), path.string());
    }
}

void writeNewFile(const std::filesystem::path& path, ByteView contents) {
    Descriptor file = openDescriptor(path, O_WRONLY | O_CREAT | O_EXCL);
    writeAll(file.number(), contents, path);
    if (::close(file.release()) != 0 && errno != EINTR) {
        throw posixError(errno, path.string());
    }
}

FileHandle::FileHandle(int descriptor, std::filesystem::path path)
    : descriptor_(descriptor), path_(std::move(path)) {}

FileHandle FileHandle::forReading(const std::filesystem::path& path) {
    FileHandle handle(openDescriptor(path, O_RDONLY).release(), path);
    struct stat status {};
    if (::fstat(handle.descriptor_, &status) != 0) {
        throw posixError(errno, path.string());
    }
    if (S_ISDIR(status.st_mode)) {
        throw posixError(EISDIR, path.string());
    }
    return handle;
}

FileHandle FileHandle::forWriting(const std::filesystem::path& path) {
    return {openOwnedFile(path, 0, OldContents::kept).release(), path};
}

FileHandle FileHandle::forWritingNew(const std::filesystem::path& path) {
    return {openDescriptor(path, O_WRONLY | O_CREAT | O_EXCL).release(), path};
}

FileHandle FileHandle::forAppending(const std::filesystem::path& path) {
    return {openDescriptor(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW).release(), path};
}

std::FILE* openForDownload(const std::filesystem::path& path) {
    Descriptor descriptor = openOwnedFile(path, O_CREAT, OldContents::dropped);
    std::FILE* const file = ::fdopen(descriptor.number(), "wb");
    if (file == nullptr) {
        throw posixError(errno, path.string());
    }
    descriptor.release();
    return file;
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(path_, other.path_);
    return *this;
}

FileHandle::~FileHandle() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::size_t FileHandle::read(std::span<std::byte> buffer) const {
    for (;;) {
        const ssize_t received =
            ::read(descriptor_, buffer.data(), std::min(buffer.size(), kLargestTransfer));
        if (received >= 0) {
            return static_cast<std::size_t>(received);
        }
        if (errno != EINTR) {
            throw posixError(errno, path_.string());
        }
    }
}

std::size_t FileHandle::readFully(std::span<std::byte> buffer) const {
    std::size_t filled = 0;
    while (const std::size_t count = read(buffer.subspan(filled))) {
        filled += count;
    }
    return filled;
}

std::uint64_t FileHandle::remainingSize() const {
    struct stat status {};
    const off_t position = ::lseek(descriptor_, 0, SEEK_CUR);
    if (position < 0 || ::fstat(descriptor_, &status) != 0 || status.st_size <= position) {
        return 0;
    }
    return static_cast<std::uint64_t>(status.st_size - position);
}

Bytes FileHandle::readUpToCount(std::uint64_t count) const {
    try {
        Bytes contents;
        contents.reserve(std::min(count, remainingSize() + kPiece));
        while (contents.size() < count) {
            const std::size_t filled = contents.size();
            contents.resize(filled + std::min<std::uint64_t>(kPiece, count - filled));
            const std::size_t received = read(std::span(contents).subspan(filled));
            contents.resize(filled + received);
            if (received == 0) {
                break;
            }
        }
        return contents;
    } catch (const std::bad_alloc&) {
        throw posixError(ENOMEM, path_.string());
    } catch (const std::length_error&) {
        throw posixError(ENOMEM, path_.string());
    }
}

Bytes FileHandle::readToEnd() const { return readUpToCount(UINT64_MAX); }

void FileHandle::write(ByteView data) const { writeAll(descriptor_, data, path_); }

} // namespace orvane::platform
