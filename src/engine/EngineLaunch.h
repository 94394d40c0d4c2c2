#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvane {

class Logger;
class Presentation;

namespace platform {
class Process;
}

/// What an engine is told of the run that starts it.
struct EngineRun {
    std::string serviceName; ///< of the endpoint on which it reports
    std::string localeName;
    std::int64_t step = 0;            ///< where it begins; 0: at the beginning
    std::string dateTime;             ///< the time stamp of the run's log
    std::vector<std::string> options; ///< those that this program was given
};

/// The engine's command line after its path: its owner and the run, then the options, but for "--fork", which
/// is meant for whoever starts this program.
std::vector<std::string> engineArguments(const EngineRun& run);

/// Starts the engine as `process` and returns; makes its file runnable first if need be. A failure ends in a
/// fatal error. Any thread.
void launchEngine(platform::Process& process, const std::filesystem::path& engine, const EngineRun& run,
                  const std::shared_ptr<Logger>& logger, Presentation& presentation);

} // namespace orvane
