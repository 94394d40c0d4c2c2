#include "tests/platform/PlatformErrors.h"

#include "platform/Foundation_mac.h"

#include <cerrno>

namespace orvane::test {

const PlatformErrors& platformErrors() {
    static const PlatformErrors errors{.transferDomain = platform::fromNSString(NSURLErrorDomain),
                                       .cancelled = NSURLErrorCancelled,
                                       .timedOut = NSURLErrorTimedOut,
                                       .tooManyRedirects = NSURLErrorHTTPTooManyRedirects,
                                       .hostNotFound = NSURLErrorCannotFindHost,
                                       .couldNotConnect = NSURLErrorCannotConnectToHost,
                                       .bodyTooShort = NSURLErrorNetworkConnectionLost,
                                       .nothingReceived = NSURLErrorNetworkConnectionLost,
                                       .noSuchFile = "No such file or directory",
                                       .timedOutRendered =
                                           "Error Domain= Code=408 \"Request timeout\" "
                                           "UserInfo={NSLocalizedDescription=Request timeout}",
                                       .folderCreatedButIsFile = EEXIST};
    return errors;
}

} // namespace orvane::test
