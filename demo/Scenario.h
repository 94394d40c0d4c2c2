#pragma once

#include "sender/EngineMessageSender.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What a sample engine does, one command a line, read from a text such as
///
///     # Blank lines and lines that begin with a number sign say nothing.
///     step Copying files
///     glide 0 60 2000            (progress from 0 to 60 within 2000 milliseconds)
///     restart 07 Restart now?
///     wait-interrupt
///
///     [step 7]                   (what an engine started with "--step 7" does instead)
///     end 0
///
/// README.md in this folder's `scenarios` lists the commands. Everything after the verb and one blank is its
/// text, taken as it stands; " | " in it parts the French wording from the German one.
namespace orvane::demo {

struct SendMessage {
    EngineMessageType type;
    std::string text;
};
struct Glide {
    std::int64_t from;
    std::int64_t to;
    std::chrono::milliseconds duration;
};
struct Flood {
    std::int64_t count;
    std::string text;
};
struct WaitDuration {
    std::chrono::milliseconds duration;
};
struct WaitForFile {
    std::filesystem::path file;
};
struct WaitForInterrupt {};
struct WaitForOwnersEnd {};
struct MarkFile {
    std::filesystem::path file;
};
struct MarkWhenInterrupted {
    std::filesystem::path file;
};
struct RecordProcess {
    std::filesystem::path file;
};
struct ExitWith {
    int status;
};

using ScenarioCommand =
    std::variant<SendMessage, Glide, Flood, WaitDuration, WaitForFile, WaitForInterrupt, WaitForOwnersEnd,
                 MarkFile, MarkWhenInterrupted, RecordProcess, ExitWith>;

/// A line that says nothing sensible; the text gives its number.
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The commands of the section for `step`, or of the part before the first section when `step` has none of
/// its own, worded for `locale`. The whole text is checked. Throws `ScenarioError`.
std::vector<ScenarioCommand> parseScenario(std::string_view text, std::int64_t step, std::string_view locale);

} // namespace orvane::demo
