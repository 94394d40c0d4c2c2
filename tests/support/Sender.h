#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane::test {

/// What an engine sends, byte for byte: the type, then `text` as it stands, without filling it up.
std::string rawMessage(std::int32_t type, std::string_view text);

/// Sends messages to a service, well formed or not, the way an engine does. A send that fails fails the test.
class Sender {
public:
    explicit Sender(std::string serviceName);

    void send(std::string_view message) const;

private:
    std::string serviceName_;
};

} // namespace orvane::test
