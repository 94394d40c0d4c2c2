#include "demo/ScenarioPlayer.h"

#include <csignal>
#include <fstream>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;

constexpr auto kPollInterval = 20ms;
constexpr int kInterruptedStatus = 130; // what a shell reports for a program ended by SIGINT
constexpr int kOwnerGoneStatus = 1;

void writeFile(const std::filesystem::path& file, const std::string& contents) {
    // Whoever waits for the file finds it complete.
    const std::filesystem::path partial = file.string() + ".partial";
    std::ofstream(partial, std::ios::binary) << contents;
    std::filesystem::rename(partial, file);
}

} // namespace

ScenarioPlayer::ScenarioPlayer(EngineMessageSender& sender, std::int64_t ownerProcess,
                               std::string processRecord)
    : sender_(sender), ownerProcess_(ownerProcess), processRecord_(std::move(processRecord)) {}

int ScenarioPlayer::play(const std::vector<ScenarioCommand>& commands) {
    try {
        return playAll(commands);
    } catch (const EngineMessageError&) {
        if (ownerIsGone()) {
            return kOwnerGoneStatus;
        }
        throw;
    }
}

int ScenarioPlayer::playAll(const std::vector<ScenarioCommand>& commands) {
    for (const ScenarioCommand& command : commands) {
        std::visit([this](const auto& alternative) { perform(alternative); }, command);
        pause(0ms);
        if (exitStatus_) {
            return *exitStatus_;
        }
    }
    return 0;
}

void ScenarioPlayer::perform(const SendMessage& command) { sender_.send(command.type, command.text); }

void ScenarioPlayer::perform(const Glide& command) {
    const std::int64_t direction = command.to < command.from ? -1 : 1;
    const std::int64_t count = (command.to - command.from) * direction + 1;
    for (std::int64_t index = 0; index < count && !exitStatus_; ++index) {
        sender_.send(EngineMessageType::progress, std::to_string(command.from + index * direction));
        pause(command.duration / count);
    }
}

void ScenarioPlayer::perform(const Flood& command) {
    for (std::int64_t number = 1; number <= command.count && !exitStatus_; ++number) {
        sender_.send(EngineMessageType::step, std::to_string(number) + command.text);
        pause(0ms);
    }
}

void ScenarioPlayer::perform(const WaitDuration& command) { pause(command.duration); }

void ScenarioPlayer::perform(const WaitForFile& command) {
    while (!exitStatus_ && !std::filesystem::exists(command.file)) {
        pause(kPollInterval);
        leaveIfOwnerIsGone();
    }
}

void ScenarioPlayer::perform(const WaitForInterrupt& /*command*/) {
    while (!exitStatus_) {
        pause(kPollInterval);
        leaveIfOwnerIsGone();
    }
}

void ScenarioPlayer::perform(const WaitForOwnersEnd& /*command*/) {
    while (!exitStatus_ && !ownerIsGone()) {
        pause(kPollInterval);
    }
}

void ScenarioPlayer::perform(const MarkFile& command) { writeFile(command.file, ""); }

void ScenarioPlayer::perform(const MarkWhenInterrupted& command) { interruptionMark_ = command.file; }

void ScenarioPlayer::perform(const RecordProcess& command) { writeFile(command.file, processRecord_); }

void ScenarioPlayer::perform(const ExitWith& command) { exitStatus_ = command.status; }

void ScenarioPlayer::pause(std::chrono::milliseconds duration) {
    if (exitStatus_ || !interruption_.arrivesWithin(duration)) {
        return;
    }
    exitStatus_ = kInterruptedStatus;
    if (interruptionMark_) {
        writeFile(*interruptionMark_, "");
    }
}

// A declined restart or a quit ends the owner without a word to its engine, which must not wait for ever
// then.
void ScenarioPlayer::leaveIfOwnerIsGone() {
    if (!exitStatus_ && ownerIsGone()) {
        exitStatus_ = kOwnerGoneStatus;
    }
}

bool ScenarioPlayer::ownerIsGone() const {
    return kill(static_cast<pid_t>(ownerProcess_), 0) != 0 && errno == ESRCH;
}

} // namespace orvane::demo
