#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// The engine's side of the channel on which it reports to the program that started it. An engine takes this
/// header, EngineMessageConnection.h, EngineMessageSender.cpp and its platform's source file into its own
/// build; they need nothing else of the project.
namespace orvane {

/// What a message says. A number travels as decimal digits, with nothing around them.
enum class EngineMessageType : std::int32_t {
    progress = 0, ///< a number, the position of the bar from 0 to 100
    step = 1,     ///< what is being done, one sentence for the user
    network = 2,  ///< a number: 0 all is well, 1 no connection, 2 stopped on a metered connection
    end = 3,      ///< a number: 0 success, 1 success and a restart of the machine is advised, 3 stopped by
                  ///< the user; any other text ends the run as a fatal error that shows it
    error = 4,    ///< a line for the user; the run goes on
    restart = 5,  ///< two digits, then a question; on yes this engine is interrupted and started anew with
                  ///< "--step" and that number, on no the run ends
    cancelButton = 6, ///< a number: 1 enables the Cancel button, 0 disables it
};

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
