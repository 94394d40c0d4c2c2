#pragma once

#include "demo/Interruption.h"
#include "demo/Scenario.h"
#include "sender/EngineMessageSender.h"

#include <filesystem>
#include <optional>
#include <string>

namespace orvane::demo {

/// Does what a scenario says, until it ends, is interrupted or is left alone by its owner. One thread.
class ScenarioPlayer {
public:
    /// `processRecord` is what a command to record writes.
    ScenarioPlayer(EngineMessageSender& sender, std::int64_t ownerProcess, std::string processRecord);

    /// Plays the commands in their order and returns the exit status: the one the scenario names, 0 at its
    /// end, 130 after an interruption, 1 when the owner has ended and so nobody follows the run. Throws
    /// `EngineMessageError`, and `std::runtime_error` for a file that cannot be written.
    int play(const std::vector<ScenarioCommand>& commands);

private:
    int playAll(const std::vector<ScenarioCommand>& commands);

    void perform(const SendMessage& command);
    void perform(const Glide& command);
    void perform(const Flood& command);
    void perform(const WaitDuration& command);
    void perform(const WaitForFile& command);
    void perform(const WaitForInterrupt& command);
    void perform(const WaitForOwnersEnd& command);
    void perform(const MarkFile& command);
    void perform(const MarkWhenInterrupted& command);
    void perform(const RecordProcess& command);
    void perform(const ExitWith& command);

    void pause(std::chrono::milliseconds duration);
    bool ownerIsGone() const;
    void leaveIfOwnerIsGone();

    EngineMessageSender& sender_;
    std::int64_t ownerProcess_;
    std::string processRecord_;
    Interruption interruption_;
    std::optional<std::filesystem::path> interruptionMark_;
    std::optional<int> exitStatus_; ///< set once nothing more is to be played
};

} // namespace orvane::demo
