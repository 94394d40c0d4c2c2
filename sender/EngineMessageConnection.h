#pragma once

#include "sender/orvane_sender.h"

#include <cstddef>
#include <cstdint>

/// One connection. Like all of the sender's implementation it needs no C++ library, so that a C program can
/// be linked with it by a C compiler: no exceptions, no allocation by `new`.
struct orvane_sender {
    char serviceName[ORVANE_SENDER_NAME_LIMIT + 1];
    std::int64_t endpoint; ///< a socket, or the name of a port
};

/// What a platform does for the sender. A failure is answered by its reason, a text that is never freed;
/// success by null.
namespace orvane::connection {

/// Finds the service of that name and fills in `endpoint`.
const char* open(orvane_sender& sender);

/// Delivers a message whose text has at most `ORVANE_SENDER_TEXT_LIMIT` bytes and no NUL. Any thread.
const char* deliver(const orvane_sender& sender, std::int32_t type, const char* text, std::size_t textSize);

/// Gives `endpoint` back.
void close(const orvane_sender& sender);

} // namespace orvane::connection
