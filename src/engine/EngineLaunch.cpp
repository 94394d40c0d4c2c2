#include "engine/EngineLaunch.h"

#include "log/Logger.h"
#include "model/ExecutableBit.h"
#include "model/Presentation.h"
#include "platform/Error.h"
#include "platform/Process.h"
#include "platform/ProcessInfo.h"

#include <algorithm>
#include <iterator>

namespace orvane {

namespace {

std::string joinedBySpaces(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (joined.empty() ? "" : " ") + text;
    }
    return joined;
}

} // namespace

std::vector<std::string> engineArguments(const EngineRun& run) {
    std::vector<std::string> arguments{
        "--pid",
        std::to_string(platform::processIdentifier()),
        "--owner",
        run.serviceName,
        "--ownerName",
        platform::processName(),
        "--incomplete",
        "--locale",
        run.localeName,
        "--step",
        std::to_string(run.step),
        "--datetime",
        run.dateTime,
    };
    std::copy_if(run.options.begin(), run.options.end(), std::back_inserter(arguments),
                 [](const std::string& argument) { return argument != "--fork"; });
    return arguments;
}

void launchEngine(platform::Process& process, const std::filesystem::path& engine, const EngineRun& run,
                  const std::shared_ptr<Logger>& logger, Presentation& presentation) {
    process.setLaunchPath(engine);
    process.setArguments(engineArguments(run));
    writeProgramLog(logger, "Spawning orvane with args " + joinedBySpaces(process.arguments()));
    try {
        ensureExecutable(engine);
        process.launch();
    } catch (const platform::Error& error) {
        writeProgramLog(logger, "Cannot spawn orvane: " + error.localizedDescription());
        presentation.showFailureAndQuit();
    }
}

} // namespace orvane
