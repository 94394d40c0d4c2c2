#include "platform/OwnedFile_posix.h"

#include "platform/CodeSignature.h"
#include "platform/Error.h"
#include "platform/Files.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

constexpr mode_t kForeignPermissions = S_ISUID | S_ISGID | S_IWGRP | S_IWOTH;
constexpr std::size_t kCopyChunk = std::size_t{1} << 20;

using Status = struct stat;

[[noreturn]] void fail(const std::filesystem::path& path) { throw posixError(errno, path.string()); }

Status statusOf(const Descriptor& file, const std::filesystem::path& path) {
    Status status{};
    if (::fstat(file.number(), &status) != 0) {
        fail(path);
    }
    return status;
}

bool isOwned(const Status& status) {
    return status.st_uid == ::geteuid() && (status.st_mode & kForeignPermissions) == 0;
}

/// Where links lead to from `path`.
std::filesystem::path resolved(const std::filesystem::path& path) {
    std::error_code failure;
    auto target = std::filesystem::canonical(path, failure);
    if (failure) {
        throw posixError(failure.value(), path.string());
    }
    return target;
}

/// A new, empty file beside the one that it will replace. It is removed with the object unless it has taken
/// that file's place.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& target)
        : target_(target), name_(target.string() + ".XXXXXX"), file_(::mkostemp(name_.data(), O_CLOEXEC)) {
        if (!file_.isOpen()) {
            fail(target);
        }
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement() {
        if (!name_.empty()) {
            ::unlink(name_.c_str());
        }
    }

    void copyContents() const {
        const FileHandle old = FileHandle::forReading(target_);
        Bytes chunk(kCopyChunk);
        while (const std::size_t count = old.read(chunk)) {
            writeAll(file_.number(), ByteView(chunk).first(count), target_);
        }
        if (::lseek(file_.number(), 0, SEEK_SET) != 0) {
            fail(target_);
        }
    }

    /// Returns the file, which now is `target`.
    Descriptor takePlace(mode_t permissions) {
        if (::fchmod(file_.number(), permissions) != 0 || ::rename(name_.c_str(), target_.c_str()) != 0) {
            fail(target_);
        }
        name_.clear();
        return std::move(file_);
    }

private:
    const std::filesystem::path target_;
    std::string name_;
    Descriptor file_;
};

} // namespace

Descriptor openOwnedFile(const std::filesystem::path& path, int flags, OldContents oldContents) {
    Descriptor file = openDescriptor(path, O_WRONLY | flags);
    const Status status = statusOf(file, path);
    if (!S_ISREG(status.st_mode)) {
        return file;
    }
    const bool mayHaveRun = status.st_size > 0;
    if (isOwned(status) && !(mayHaveRun && remembersCodeSignatures())) {
        if (oldContents == OldContents::dropped && ::ftruncate(file.number(), 0) != 0) {
            fail(path);
        }
        return file;
    }
    Replacement replacement(resolved(path));
    if (oldContents == OldContents::kept) {
        replacement.copyContents();
    }
    return replacement.takePlace(status.st_mode & 0777 & ~kForeignPermissions);
}

} // namespace orvane::platform
