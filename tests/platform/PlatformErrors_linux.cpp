#include "tests/platform/PlatformErrors.h"

#include <cerrno>

namespace orvane::test {

/// The transfers' codes are CURLcode values, as log lines show them.
const PlatformErrors& platformErrors() {
    static const PlatformErrors errors{.transferDomain = "libcurl",
                                       .cancelled = 42,
                                       .timedOut = 28,
                                       .tooManyRedirects = 47,
                                       .hostNotFound = 6,
                                       .couldNotConnect = 7,
                                       .bodyTooShort = 18,
                                       .nothingReceived = 52,
                                       .noSuchFile = "No such file or directory (ENOENT)",
                                       .timedOutRendered = R"(Error Domain= Code=408 "Request timeout")",
                                       .folderCreatedButIsFile = ENOTDIR};
    return errors;
}

} // namespace orvane::test
