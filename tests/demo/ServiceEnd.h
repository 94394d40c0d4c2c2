#pragma once

#include "platform/MessagePort.h"

#include <cstdint>
#include <string>
#include <utility>

namespace orvane::test {

/// The receiving end of a service of its own name, as the product has it.
class ServiceEnd {
public:
    ServiceEnd();
    ~ServiceEnd();
    ServiceEnd(const ServiceEnd&) = delete;
    ServiceEnd& operator=(const ServiceEnd&) = delete;

    const std::string& name() const { return name_; }

    /// Waits for a message; its type and its text up to the first NUL.
    std::pair<std::int32_t, std::string> receive();

    /// The last message's whole text field.
    const platform::EngineMessage& message() const { return message_; }

private:
    std::string name_;
    std::uint32_t port_ = 0;
    platform::EngineMessage message_;
};

} // namespace orvane::test
