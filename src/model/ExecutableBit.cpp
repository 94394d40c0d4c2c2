#include "model/ExecutableBit.h"

#include "platform/Files.h"

namespace orvane {

void ensureExecutable(const std::filesystem::path& engine) {
    if (!platform::isExecutableFile(engine)) {
        platform::setPosixPermissions(engine, 0744);
    }
}

} // namespace orvane
