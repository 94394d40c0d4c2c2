#pragma once

#include "sender/EngineMessageTypes.h"
#include "sender/orvane_sender.h"

#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// The engine's side of the channel on which it reports to the program that started it, for engines in C++: a
/// thin layer over the functions of orvane_sender.h, so that the library depends on no compiler's C++.
namespace orvane {

/// Text bytes that one message carries at most; the field's last byte is always NUL.
inline constexpr std::size_t kEngineMessageTextLimit = ORVANE_SENDER_TEXT_LIMIT;

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
    /// Connects to the service. Throws `EngineMessageError` when no program serves that name.
    explicit EngineMessageSender(std::string_view serviceName) {
        ErrorText error{};
        sender_.reset(orvane_sender_open(std::string(serviceName).c_str(), error.data(), error.size()));
        if (!sender_) {
            throw EngineMessageError(error.data());
        }
    }

    /// Delivers one message; waits while the receiver has no room for it. `text` is UTF-8 and read up to its
    /// first NUL; one of more than `kEngineMessageTextLimit` bytes is cut after its last whole character that
    /// fits. Throws `EngineMessageError` when the receiver is gone.
    void send(EngineMessageType type, std::string_view text) {
        ErrorText error{};
        if (orvane_sender_send(sender_.get(), static_cast<std::int32_t>(type), std::string(text).c_str(),
                               error.data(), error.size()) != 0) {
            throw EngineMessageError(error.data());
        }
    }

private:
    using ErrorText = std::array<char, ORVANE_SENDER_ERROR_SIZE>;

    struct Close {
        void operator()(orvane_sender* sender) const { orvane_sender_close(sender); }
    };

    std::unique_ptr<orvane_sender, Close> sender_;
};

} // namespace orvane
