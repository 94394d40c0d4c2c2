#include "log/CrashReport.h"

#include "config/Deployment.h"
#include "log/Base64.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/UrlSession.h"

#include <cerrno>
#include <new>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

constexpr std::string_view kReportStart = R"({"Product": "varlen", "Report": ")";
constexpr std::string_view kReportEnd =
    R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";

/// A multiple of base64's three bytes: only the last chunk is padded.
constexpr std::size_t kChunk = std::size_t{3} << 18;

} // namespace

/// Base64 needs no escaping in JSON.
std::string crashReportPayload(const std::filesystem::path& logFile) {
    const auto log = platform::FileHandle::forReading(logFile);
    try {
        std::string payload(kReportStart);
        payload.reserve(kReportStart.size() + base64Length(log.remainingSize()) + kReportEnd.size());
        Bytes buffer(kChunk);
        while (const std::size_t count = log.readFully(buffer)) {
            appendBase64(payload, ByteView(buffer).first(count));
        }
        payload += kReportEnd;
        return payload;
    } catch (const std::bad_alloc&) {
        throw platform::posixError(ENOMEM, logFile.string());
    }
}

void postCrashReport(std::string payload, const Deployment& deployment) {
    platform::UrlRequest request{
        .url = deployment.crashReportUrl,
        .httpMethod = "POST",
        .httpHeaderFields = {{"Content-Type", "application/json"}},
        .httpBody = std::move(payload),
        .cachePolicy = platform::CachePolicy::useProtocolCachePolicy,
        .timeoutInterval = deployment.crashReportTimeout,
    };
    const auto result = platform::performRequest(std::move(request), deployment.crashReportWait,
                                                 platform::ResponseBody::discard);
    if (const platform::Error* const error = errorOf(result)) {
        throw platform::Error(*error);
    }
}

} // namespace orvane
