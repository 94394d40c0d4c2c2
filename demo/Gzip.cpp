#include "demo/Gzip.h"

#include <stdexcept>
#include <zlib.h>

namespace orvane::demo {

std::string gzipped(std::string content) {
    constexpr int kGzipWindow = 15 + 16; // the largest window, in the gzip format instead of zlib's own
    constexpr int kMemoryLevel = 8;
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipWindow, kMemoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("cannot start compressing");
    }
    std::string coded(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(content.data());
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(coded.data());
    stream.avail_out = static_cast<uInt>(coded.size());
    const int result = deflate(&stream, Z_FINISH);
    coded.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::runtime_error("cannot compress");
    }
    return coded;
}

} // namespace orvane::demo
