#include "tools/StagedFile.h"

#include "platform/Files.h"

namespace orvane::tools {

namespace fs = std::filesystem;

StagedFile::StagedFile(fs::path target)
    : target_(std::move(target)),
      staged_(target_.parent_path() / fs::path(".").concat(target_.filename().native()).concat(".partial")) {
    fs::remove(staged_); // of a process that was ended
}

StagedFile::~StagedFile() {
    std::error_code ignored;
    fs::remove(staged_, ignored);
}

void StagedFile::write(ByteView contents) const { platform::writeNewFile(staged_, contents); }

void StagedFile::commit() const { fs::rename(staged_, target_); }

} // namespace orvane::tools
