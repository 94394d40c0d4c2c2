#include "sender/EngineMessageConnection.h"

#include <cstring>
#include <mach/mach.h>
#include <mach/mach_error.h>
#include <servers/bootstrap.h>

namespace orvane::connection {

namespace {

struct SentMessage {
    mach_msg_header_t header;
    std::int32_t type;
    char text[ORVANE_SENDER_TEXT_LIMIT + 1];
};

static_assert(sizeof(SentMessage) == 4124);
static_assert(ORVANE_SENDER_NAME_LIMIT < sizeof(name_t));

} // namespace

const char* open(orvane_sender& sender) {
    name_t name{};
    std::memcpy(name, sender.serviceName, std::strlen(sender.serviceName));
    mach_port_t port = MACH_PORT_NULL;
    if (const kern_return_t result = bootstrap_look_up(bootstrap_port, name, &port); result != KERN_SUCCESS) {
        return mach_error_string(result);
    }
    sender.endpoint = port;
    return nullptr;
}

const char* deliver(const orvane_sender& sender, std::int32_t type, const char* text, std::size_t textSize) {
    SentMessage message{};
    message.header.msgh_bits = MACH_MSGH_BITS(MACH_MSG_TYPE_COPY_SEND, 0);
    message.header.msgh_size = sizeof(message);
    message.header.msgh_remote_port = static_cast<mach_port_t>(sender.endpoint);
    message.type = type;
    std::memcpy(message.text, text, textSize);
    const mach_msg_return_t result = mach_msg(&message.header, MACH_SEND_MSG, sizeof(message), 0,
                                              MACH_PORT_NULL, MACH_MSG_TIMEOUT_NONE, MACH_PORT_NULL);
    return result == MACH_MSG_SUCCESS ? nullptr : mach_error_string(result);
}

void close(const orvane_sender& sender) {
    mach_port_deallocate(mach_task_self(), static_cast<mach_port_t>(sender.endpoint));
}

} // namespace orvane::connection
