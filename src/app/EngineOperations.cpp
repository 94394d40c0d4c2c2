#include "app/ViewController.h"

#include "download/FileDescription.h"
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

bool ViewController::orvaneMajorVersionMatches() { return engineChecks().orvaneMajorVersionMatches(); }

bool ViewController::orvaneVersionsMatch() { return engineChecks().orvaneVersionsMatch(); }

bool ViewController::orvaneChecksumsMatch() { return engineChecks().orvaneChecksumsMatch(); }

std::string ViewController::getCurrentOrvaneVersion() { return engineChecks().getCurrentOrvaneVersion(); }

} // namespace orvane
