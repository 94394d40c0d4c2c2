#include "log/CrashReport.h"

#include "config/Deployment.h"
#include "log/Base64.h"
#include "platform/BoundedRequest.h"
#include "platform/Error.h"
#include "platform/UrlSession.h"

#include <utility>

namespace orvane {

/// Base64 needs no escaping in JSON.
std::string crashReportPayload(ByteView log) {
    return R"({"Product": "varlen", "Report": ")" + base64Encoded(log) +
           R"(", "OS": "darwin", "SoftwareName": "bootstrapper", "SoftwareVersion": "0.1.0"})";
}

void postCrashReport(std::string payload, const Deployment& deployment) {
    const platform::UrlRequest request{
        .url = deployment.crashReportUrl,
        .httpMethod = "POST",
        .httpHeaderFields = {{"Content-Type", "application/json"}},
        .httpBody = std::move(payload),
        .cachePolicy = platform::CachePolicy::useProtocolCachePolicy,
        .timeoutInterval = deployment.crashReportTimeout,
    };
    const platform::RequestOutcome outcome = platform::performRequest(request, deployment.crashReportWait);
    if (outcome.error) {
        throw platform::Error(*outcome.error);
    }
}

} // namespace orvane
