#include "app/ViewController.h"

#include "download/FileDescription.h"
#include "engine/EngineLaunch.h"
#include "engine/EngineMessages.h"
#include "log/Logger.h"
#include "platform/Process.h"
#include "platform/ProgrammingError.h"
#include "verify/Crypto.h"
#include "verify/EngineChecks.h"

#include <utility>

namespace orvane {

// What the run knows, handed to the units that do the work.

DescribedEngine ViewController::describedEngine() const {
    FileDownloadInfo info = orvaneDescription();
    return {.location = orvaneUrl(), .info = std::move(info), .isEncrypted = isOrvaneEncrypted};
}

EngineChecks ViewController::engineChecks() { return {describedEngine(), logger.load(), *this}; }

bool ViewController::downloadFileInfo() {
    auto info =
        fetchFileDescription(deployment_.fileDescriptionUrl, deployment_.fileDescriptionWait, logger.load());
    const bool found = info.has_value();
    if (found) {
        orvaneDownloadInfo.store(std::move(info));
    }
    return found;
}

void ViewController::downloadOrvane(std::function<void()> completionHandler) {
    downloadEngine(describedEngine(), deployment_.downloadTimeout, logger.load(), shared_from_this(),
                   std::move(completionHandler));
}

void ViewController::setOrvaneDownloadTask(std::shared_ptr<DownloadTask> task) {
    orvaneDownloadTask.store(std::move(task));
}

int ViewController::decryptOrvane(const std::filesystem::path& encryptedFile) {
    return decryptEngine(orvaneDescription(), orvaneUrl(), encryptedFile);
}

bool ViewController::orvaneMajorVersionMatches() { return engineChecks().orvaneMajorVersionMatches(); }

bool ViewController::orvaneVersionsMatch() { return engineChecks().orvaneVersionsMatch(); }

bool ViewController::orvaneChecksumsMatch() { return engineChecks().orvaneChecksumsMatch(); }

std::string ViewController::getCurrentOrvaneVersion() { return engineChecks().getCurrentOrvaneVersion(); }

void ViewController::spawnOrvane() {
    const auto process = std::make_shared<platform::Process>();
    orvaneProcessHandle.store(process);
    const auto runLogger = logger.load();
    if (!runLogger) {
        programmingError("the engine is started before the log was opened");
    }
    launchEngine(*process, orvaneUrl(),
                 {.serviceName = machPortName,
                  .localeName = localeName.load(),
                  .step = lastOrvaneStep,
                  .dateTime = runLogger->GetCurrentTimeString(),
                  .options = orvaneArguments.load()},
                 runLogger, *this);
}

void ViewController::interruptOrvane() {
    if (const auto process = orvaneProcessHandle.load()) {
        process->interrupt();
    }
}

void ViewController::onCopyData(std::int32_t msgType, const std::string& text) {
    actOnEngineMessage(msgType, text, *this);
}

void ViewController::setLastOrvaneStep(std::int64_t step) { lastOrvaneStep = step; }

} // namespace orvane
