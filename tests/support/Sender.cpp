#include "tests/support/Sender.h"

#include <utility>

namespace orvane::test {

std::string rawMessage(std::int32_t type, std::string_view text) {
    std::string message;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        message += static_cast<char>(static_cast<std::uint32_t>(type) >> shift & 0xFFU);
    }
    return message.append(text);
}

Sender::Sender(std::string serviceName) : serviceName_(std::move(serviceName)) {}

} // namespace orvane::test
