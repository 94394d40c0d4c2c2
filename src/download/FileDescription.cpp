#include "download/FileDescription.h"

#include "log/Logger.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/ProgrammingError.h"
#include "platform/Utf8.h"

namespace orvane {

std::optional<FileDownloadInfo> fetchFileDescription(const std::string& url, std::chrono::seconds waitLimit,
                                                     const std::shared_ptr<Logger>& logger) {
    const auto result = platform::performRequest({.url = url}, waitLimit);
    if (const platform::Error* const error = errorOf(result)) {
        writeProgramLog(logger, "Unable to download orvane file description: Optional(" +
                                    error->debugDescription() + ")");
        return std::nullopt;
    }
    const auto& body = std::get<Bytes>(result);
    if (logger) {
        const std::string_view text = textOf(body);
        if (!isValidUtf8(text)) {
            invalidInputNotLogged("the file description is not valid UTF-8");
        }
        // Appended, which spares a second copy of what may be 64 MiB.
        logger->WriteProgramLog(std::string("Orvane download info is ").append(text));
    }
    try {
        return decodeFileDownloadInfo(body);
    } catch (const platform::Error& error) {
        writeProgramLog(logger,
                        "Unable to download orvane file description: " + error.localizedDescription());
        return std::nullopt;
    }
}

} // namespace orvane
