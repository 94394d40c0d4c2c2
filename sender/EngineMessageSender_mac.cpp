#include "sender/EngineMessageConnection.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mach/mach.h>
#include <mach/mach_error.h>
#include <servers/bootstrap.h>

namespace orvane {

namespace {

struct SentMessage {
    mach_msg_header_t header;
    std::int32_t type;
    char text[kEngineMessageTextLimit + 1];
};

static_assert(sizeof(SentMessage) == 4124);

[[noreturn]] void fail(const std::string& what, const std::string& serviceName, kern_return_t result) {
    throw EngineMessageError(what + " " + serviceName + ": " + mach_error_string(result));
}

} // namespace

EngineMessageSender::Connection::Connection(std::string_view serviceName) : serviceName_(serviceName) {
    name_t name{};
    std::ranges::copy(serviceName_.substr(0, sizeof(name) - 1), std::begin(name));
    mach_port_t port = MACH_PORT_NULL;
    if (const kern_return_t result = bootstrap_look_up(bootstrap_port, name, &port); result != KERN_SUCCESS) {
        fail("cannot connect to", serviceName_, result);
    }
    endpoint_ = port;
}

EngineMessageSender::Connection::~Connection() {
    mach_port_deallocate(mach_task_self(), static_cast<mach_port_t>(endpoint_));
}

void EngineMessageSender::Connection::deliver(std::int32_t type, std::string_view text) const {
    SentMessage message{};
    message.header.msgh_bits = MACH_MSGH_BITS(MACH_MSG_TYPE_COPY_SEND, 0);
    message.header.msgh_size = sizeof(message);
    message.header.msgh_remote_port = static_cast<mach_port_t>(endpoint_);
    message.type = type;
    std::memcpy(message.text, text.data(), std::min(text.size(), kEngineMessageTextLimit));
    const mach_msg_return_t result = mach_msg(&message.header, MACH_SEND_MSG, sizeof(message), 0,
                                              MACH_PORT_NULL, MACH_MSG_TIMEOUT_NONE, MACH_PORT_NULL);
    if (result != MACH_MSG_SUCCESS) {
        fail("cannot send to", serviceName_, result);
    }
}

} // namespace orvane
