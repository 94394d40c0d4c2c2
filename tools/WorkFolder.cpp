#include "tools/WorkFolder.h"

#include "tools/ToolError.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace orvane::tools {

WorkFolder::WorkFolder() {
    std::error_code noFolder;
    std::string name = (std::filesystem::temp_directory_path(noFolder) / "orvane-publish-XXXXXX").string();
    if (noFolder || ::mkdtemp(name.data()) == nullptr) {
        const std::error_code reason = noFolder ? noFolder : std::error_code(errno, std::generic_category());
        throw ToolError(ExitStatus::cannotCreate, "no folder for temporary files: " + reason.message());
    }
    path_ = name;
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace orvane::tools
