#pragma once

#include "platform/Bytes.h"

#include <filesystem>

namespace orvane::tools {

/// A file that appears under its name only when it is committed, and leaves nothing behind otherwise.
class StagedFile {
public:
    /// Staged in the target's own folder, under a hidden name.
    explicit StagedFile(std::filesystem::path target);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    void write(ByteView contents) const; ///< throws `platform::Error`
    void commit() const;                 ///< throws `std::filesystem::filesystem_error`

private:
    std::filesystem::path target_;
    std::filesystem::path staged_;
};

} // namespace orvane::tools
