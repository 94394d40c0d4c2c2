#include "app/ViewController.h"

#include "log/Logger.h"
#include "model/ExecutableBit.h"
#include "model/TextIdentifiers.h"
#include "platform/Error.h"
#include "platform/Process.h"
#include "platform/ProcessInfo.h"
#include "platform/ProgrammingError.h"

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

/// What the engine is told of its owner and of the run, then the options this program was given, but for
/// "--fork", which is meant for whoever starts us.
std::vector<std::string> ViewController::engineArguments() const {
    const auto runLogger = logger.load();
    if (!runLogger) {
        programmingError("the engine is started before the log was opened");
    }
    std::vector<std::string> arguments{
        "--pid",
        std::to_string(platform::processIdentifier()),
        "--owner",
        machPortName,
        "--ownerName",
        platform::processName(),
        "--incomplete",
        "--locale",
        localeName.load(),
        "--step",
        std::to_string(lastOrvaneStep),
        "--datetime",
        runLogger->GetCurrentTimeString(),
    };
    const std::vector<std::string> passedOn = orvaneArguments.load();
    std::copy_if(passedOn.begin(), passedOn.end(), std::back_inserter(arguments),
                 [](const std::string& argument) { return argument != "--fork"; });
    return arguments;
}

void ViewController::spawnOrvane() {
    const auto process = std::make_shared<platform::Process>();
    orvaneProcessHandle.store(process);
    const std::filesystem::path executable = orvaneUrl();
    process->setLaunchPath(executable);
    process->setArguments(engineArguments());
    writeProgramLog("Spawning orvane with args " + joinedBySpaces(process->arguments()));
    try {
        ensureExecutable(executable);
        process->launch();
    } catch (const platform::Error& error) {
        writeProgramLog("Cannot spawn orvane: " + error.localizedDescription());
        showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed)));
    }
}

} // namespace orvane
