#include "platform/MessagePort.h"

#include <mach/mach.h>
#include <servers/bootstrap.h>

#include <algorithm>
#include <cstring>

namespace orvane::platform {

namespace {

/// A message as the kernel lays it out, with room for the trailer it appends.
struct MachMessage {
    mach_msg_header_t header;
    std::int32_t type;
    char text[kMessageTextSize];
    mach_msg_trailer_t trailer;
};

static_assert(sizeof(mach_msg_header_t) == 24);
static_assert(sizeof(mach_msg_trailer_t) == 8);
static_assert(offsetof(MachMessage, type) == 24);
static_assert(offsetof(MachMessage, text) == 28);
static_assert(offsetof(MachMessage, trailer) == 4124);
static_assert(sizeof(MachMessage) == 4132);

} // namespace

std::uint32_t allocateReceivePort(std::uint32_t& port) {
    mach_port_t allocated = MACH_PORT_NULL;
    const kern_return_t result = mach_port_allocate(mach_task_self(), MACH_PORT_RIGHT_RECEIVE, &allocated);
    port = allocated;
    return static_cast<std::uint32_t>(result);
}

std::uint32_t insertSendRight(std::uint32_t port) {
    return static_cast<std::uint32_t>(
        mach_port_insert_right(mach_task_self(), port, port, MACH_MSG_TYPE_MAKE_SEND));
}

std::uint32_t registerPort(std::uint32_t port, const char* name) {
    name_t serviceName{};
    strlcpy(serviceName, name, sizeof(serviceName));
    // Deprecated in favour of launchd's own jobs; for a service that comes and goes with one run there is no
    // other.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    return static_cast<std::uint32_t>(bootstrap_register(bootstrap_port, serviceName, port));
#pragma clang diagnostic pop
}

std::uint32_t receiveMessage(std::uint32_t port, EngineMessage& message) {
    MachMessage received{};
    const mach_msg_return_t result = mach_msg(&received.header, MACH_RCV_MSG, 0, sizeof(received), port,
                                              MACH_MSG_TIMEOUT_NONE, MACH_PORT_NULL);
    if (result != MACH_MSG_SUCCESS) {
        return static_cast<std::uint32_t>(result);
    }
    // Behind a short message stands the kernel's trailer, which is no text.
    const std::size_t size = std::min<std::size_t>(received.header.msgh_size, offsetof(MachMessage, trailer));
    auto* const bytes = reinterpret_cast<char*>(&received);
    std::memset(bytes + size, 0, sizeof(received) - size);
    message.type = received.type;
    std::memcpy(message.text, received.text, sizeof(message.text));
    // Whatever rights or memory a sender smuggled in are let go.
    mach_msg_destroy(&received.header);
    return 0;
}

} // namespace orvane::platform
