#include "app/ViewController.h"

#include "log/Logger.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/ProgrammingError.h"
#include "platform/Utf8.h"

namespace orvane {

bool ViewController::downloadFileInfo() {
    const platform::RequestOutcome outcome =
        platform::performRequest({.url = deployment_.fileDescriptionUrl}, deployment_.fileDescriptionWait);
    if (outcome.error) {
        writeProgramLog("Unable to download orvane file description: Optional(" +
                        outcome.error->debugDescription() + ")");
        return false;
    }
    if (logger.load()) {
        const std::string_view body = textOf(*outcome.body);
        if (!isValidUtf8(body)) {
            programmingError("the file description is not valid UTF-8");
        }
        writeProgramLog("Orvane download info is " + std::string(body));
    }
    try {
        orvaneDownloadInfo.store(decodeFileDownloadInfo(*outcome.body));
        return true;
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to download orvane file description: " + error.localizedDescription());
        return false;
    }
}

} // namespace orvane
