#include "log/Logger.h"

#include "log/Base64.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/UrlSession.h"

#include <utility>

namespace orvane {

namespace {

/// The text of the report as the vendor's service reads it. Base64 needs no escaping in JSON.
std::string crashReportPayload(ByteView log) {
    return R"({"Product": "varlen", "Report": ")" + base64Encoded(log) +
           R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";
}

} // namespace

void Logger::SendCrashToOrvaneServer() {
    if (!logFile_) {
        return;
    }
    try {
        std::string payload =
            crashReportPayload(platform::FileHandle::forReading(programLogFilePath_).readToEnd());
        sendPayloadToOrvaneServer(std::move(payload));
    } catch (const platform::Error& error) {
        WriteProgramLog("cannot send crash report to orvane server: " + error.localizedDescription());
    }
}

void Logger::sendPayloadToOrvaneServer(std::string payload) {
    const platform::UrlRequest request{
        .url = deployment_.crashReportUrl,
        .httpMethod = "POST",
        .httpHeaderFields = {{"Content-Type", "application/json"}},
        .httpBody = std::move(payload),
        .cachePolicy = platform::CachePolicy::useProtocolCachePolicy,
        .timeoutInterval = deployment_.crashReportTimeout,
    };
    // Any answer, an error status included, counts as delivered.
    const platform::RequestOutcome outcome = platform::performRequest(request, deployment_.crashReportWait);
    if (outcome.error) {
        throw platform::Error(*outcome.error);
    }
}

} // namespace orvane
