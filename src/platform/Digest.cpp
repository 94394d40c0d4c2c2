#include "platform/Digest.h"

#include "platform/ProgrammingError.h"

#include <cstdint>
#include <limits>

namespace orvane::platform {

void Digest::update(ByteView data) {
    if (data.size() > std::numeric_limits<std::uint32_t>::max()) {
        programmingError("a digest was fed more than 4294967295 bytes at once");
    }
    feed(data);
}

} // namespace orvane::platform
