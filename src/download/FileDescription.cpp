#include "download/FileDescription.h"

#include "log/Logger.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/ProgrammingError.h"
#include "platform/Utf8.h"

namespace orvane {

std::optional<FileDownloadInfo> fetchFileDescription(const std::string& url, std::chrono::seconds waitLimit,
                                                     const std::shared_ptr<Logger>& logger) {
    const platform::RequestOutcome outcome = platform::performRequest({.url = url}, waitLimit);
    if (outcome.error) {
        writeProgramLog(logger, "Unable to download orvane file description: Optional(" +
                                    outcome.error->debugDescription() + ")");
        return std::nullopt;
    }
    if (logger) {
        const std::string_view body = textOf(*outcome.body);
        if (!isValidUtf8(body)) {
            invalidInputNotLogged("the file description is not valid UTF-8");
        }
        logger->WriteProgramLog("Orvane download info is " + std::string(body));
    }
    try {
        return decodeFileDownloadInfo(*outcome.body);
    } catch (const platform::Error& error) {
        writeProgramLog(logger,
                        "Unable to download orvane file description: " + error.localizedDescription());
        return std::nullopt;
    }
}

} // namespace orvane
