#pragma once

#include "sender/EngineMessageSender.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

/// What a platform does for the sender: finds the service and delivers a message of a type and a text that
/// fits. Both throw `EngineMessageError`; `deliver` may be called from any thread.
class EngineMessageSender::Connection {
public:
    explicit Connection(std::string_view serviceName);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void deliver(std::int32_t type, std::string_view text) const;

private:
    const std::string serviceName_;
    std::int64_t endpoint_ = -1; ///< a socket, or the name of a port
};

} // namespace orvane
