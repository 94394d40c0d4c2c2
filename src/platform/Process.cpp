#include "platform/Process.h"

#include <algorithm>

namespace orvane::platform {

Bytes Process::readStandardOutputToEnd(std::size_t most) {
    constexpr std::size_t kChunk = std::size_t{64} << 10;
    Bytes output;
    Bytes chunk(kChunk);
    while (const std::size_t count = readStandardOutput(chunk)) {
        const std::size_t kept = std::min(count, most - output.size());
        output.insert(output.end(), chunk.data(), chunk.data() + kept);
    }
    return output;
}

} // namespace orvane::platform
