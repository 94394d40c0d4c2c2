#pragma once

#include <filesystem>
#include <string>

namespace orvane::test {

/// An empty folder of its own for one test, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// The whole contents of a file; a file that cannot be read fails the test and reads as empty.
std::string contentsOf(const std::filesystem::path& file);

/// Writes a file, together with the folders above it.
void writeFile(const std::filesystem::path& file, const std::string& contents);

} // namespace orvane::test
