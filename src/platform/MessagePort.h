#pragma once

#include <cstddef>
#include <cstdint>

/// A named endpoint that receives messages of one form: a signed 32-bit type and a text field. Each call
/// answers the platform's result code, 0 for success.
namespace orvane::platform {

inline constexpr std::size_t kMessageTextSize = 4096;

/// What an engine sends.
struct EngineMessage {
    std::int32_t type = 0;
    char text[kMessageTextSize] = {}; ///< not necessarily terminated
};

/// Makes a port that can receive and gives its name.
std::uint32_t allocateReceivePort(std::uint32_t& port);

/// Lets others send to the port.
std::uint32_t insertSendRight(std::uint32_t port);

/// Makes the port known to other processes under `name`.
std::uint32_t registerPort(std::uint32_t port, const char* name);

/// Waits for one message. A message that is too long is discarded and answered with a code; `message` is then
/// unspecified. What a short message leaves out reads as zero. Linux: so is the first message on this port of
/// a user who may not send here; all further ones of such users are discarded without an answer.
std::uint32_t receiveMessage(std::uint32_t port, EngineMessage& message);

} // namespace orvane::platform
