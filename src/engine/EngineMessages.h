#pragma once

#include <cstdint>
#include <string>

namespace orvane {

class Presentation;

/// What acting on an engine's messages needs of the run. Called from whatever thread acts on them.
class EngineMessagesHost {
public:
    virtual Presentation& presentation() = 0;

    /// Takes effect before it returns.
    virtual void setCancelButtonEnabled(bool enabled) = 0;

    /// The step at which the next engine begins.
    virtual void setLastOrvaneStep(std::int64_t step) = 0;

    /// Sends the engine that was started last an interrupt, if there is one.
    virtual void interruptOrvane() = 0;

    virtual void spawnOrvane() = 0;

protected:
    EngineMessagesHost() = default;
    ~EngineMessagesHost() = default;
    EngineMessagesHost(const EngineMessagesHost&) = default;
    EngineMessagesHost& operator=(const EngineMessagesHost&) = default;
};

/// Acts on one message of an engine: shows it, asks the user, or ends the process. A type that is not known,
/// and a text that is not what its type holds, change nothing, but for a restart question without its step
/// number, which is a programming error. Returns when the message has been acted on; one thread at a time.
void actOnEngineMessage(std::int32_t msgType, const std::string& text, EngineMessagesHost& host);

} // namespace orvane
