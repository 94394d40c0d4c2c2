#pragma once

#include "sender/EngineMessageTypes.h"

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// The engine's side of the channel on which it reports to the program that started it. An engine takes this
/// folder into its own build, with its platform's source file alone; it needs nothing else of the project.
namespace orvane {

/// Text bytes that one message carries at most; the field's last byte is always NUL.
inline constexpr std::size_t kEngineMessageTextLimit = 4095;

/// A message could not be delivered; the text names the service and the reason.
class EngineMessageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Sends messages to the service whose name the engine was given after "--owner".
///
/// One object for the whole run; `send` may be called from any thread, and messages of one thread arrive in
/// the order of their sending.
class EngineMessageSender {
public:
    /// Connects to the service. Throws `EngineMessageError` when nobody serves that name.
    explicit EngineMessageSender(std::string_view serviceName);
    ~EngineMessageSender();
    EngineMessageSender(const EngineMessageSender&) = delete;
    EngineMessageSender& operator=(const EngineMessageSender&) = delete;

    /// Delivers one message; waits while the receiver has no room for it. `text` is UTF-8 and read up to its
    /// first NUL; one of more than `kEngineMessageTextLimit` bytes is cut after its last whole character that
    /// fits. Throws `EngineMessageError` when the receiver is gone.
    void send(EngineMessageType type, std::string_view text);

private:
    class Connection;
    std::unique_ptr<Connection> connection_;
};

} // namespace orvane
