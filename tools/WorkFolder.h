#pragma once

#include <filesystem>

namespace orvane::tools {

/// A folder of this user's alone under the system's folder for temporary files (TMPDIR), removed in the end
/// with all it holds. Throws `ToolError` when it cannot be made.
class WorkFolder {
public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace orvane::tools
