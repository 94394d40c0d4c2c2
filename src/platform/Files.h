#pragma once

#include "platform/Bytes.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>

/// Files as the program uses them. Paths are taken as they are, symbolic links are followed. Whatever fails
/// throws `Error` naming the path. Any thread.
namespace orvane::platform {

bool fileExists(const std::filesystem::path& path);

/// For the user this process runs as.
bool isExecutableFile(const std::filesystem::path& path);

void setPosixPermissions(const std::filesystem::path& path, unsigned permissions);

/// Creates the folder and all missing folders above it. An existing folder is no error.
void createDirectoryWithIntermediates(const std::filesystem::path& path);

/// Removes a file, or a folder with its contents. Links are removed, not followed, at `path` and below it.
/// Nothing there is no error.
void removeItem(const std::filesystem::path& path);

/// Creates a file that must not exist yet and writes `contents` to it.
void writeNewFile(const std::filesystem::path& path, ByteView contents);

/// Opens the file at `path` for new contents, as fopen(3) does with "wb": it is created or emptied. If
/// another user could write to it, a file of this process's user takes its place. The caller closes the
/// stream with fclose.
std::FILE* openForDownload(const std::filesystem::path& path);

/// An open file, closed with the object. Move-only, one thread at a time, except `write` on a handle made by
/// `forAppending`.
class FileHandle {
public:
    static FileHandle forReading(const std::filesystem::path& path); ///< a folder is refused

    /// An existing file, from its beginning, without truncating it. If another user could write to it, it is
    /// replaced first: a file of this process's user takes its name and contents.
    static FileHandle forWriting(const std::filesystem::path& path);

    /// A file that must not exist yet, which is made.
    static FileHandle forWritingNew(const std::filesystem::path& path);

    /// The file is made if it is missing; a link in its place is an error. Each write goes whole to the end
    /// of that moment, whichever thread or process writes.
    static FileHandle forAppending(const std::filesystem::path& path);

    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&& other) noexcept;
    ~FileHandle();

    /// Reads at most `buffer.size()` bytes and returns how many; 0 only at the end of the file.
    std::size_t read(std::span<std::byte> buffer) const;

    /// Reads on until `buffer` is full or the file ends, and returns how many bytes.
    std::size_t readFully(std::span<std::byte> buffer) const;

    /// The bytes from the current position to the end; 0 where that is not known, as for a pipe.
    std::uint64_t remainingSize() const;

    /// Reads on until `count` bytes or the end of the file. Memory grows with what is there, not with
    /// `count`.
    Bytes readUpToCount(std::uint64_t count) const;

    Bytes readToEnd() const;

    void write(ByteView data) const;

private:
    FileHandle(int descriptor, std::filesystem::path path);

    int descriptor_ = -1;
    std::filesystem::path path_; ///< for error texts
};

} // namespace orvane::platform
