#pragma once

#include <cstdint>
#include <string>

namespace orvane::test {

/// What an engine sends, byte for byte: the type, then `text` as it stands, without filling it up.
std::string rawMessage(std::int32_t type, const std::string& text);

/// Sends one message to the service of that name, well formed or not. A service that does not take it fails
/// the test.
void sendRaw(const std::string& serviceName, const std::string& message);

} // namespace orvane::test
