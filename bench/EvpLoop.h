#pragma once

#include "platform/Bytes.h"

#include <string>

namespace orvane::bench {

/// The digest library alone over memory, in pieces of the size in which the program reads files.
void digestMemory(const std::string& algorithm, ByteView memory);

} // namespace orvane::bench
