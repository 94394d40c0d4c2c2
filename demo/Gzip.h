#pragma once

#include <string>

namespace orvane::demo {

/// `content` in the gzip format (RFC 1952).
std::string gzipped(std::string content);

} // namespace orvane::demo
