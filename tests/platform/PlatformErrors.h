#pragma once

#include <cstdint>
#include <string>

namespace orvane::test {

/// How this platform names what goes wrong, where each has names of its own.
struct PlatformErrors {
    std::string transferDomain; ///< of the codes that follow
    std::int64_t cancelled;
    std::int64_t timedOut;
    std::int64_t tooManyRedirects;
    std::int64_t hostNotFound;
    std::int64_t couldNotConnect;
    std::int64_t bodyTooShort;
    std::int64_t nothingReceived;

    std::string noSuchFile;       ///< ENOENT in words
    std::string timedOutRendered; ///< domain "", code 408 and "Request timeout" as a developer reads them

    int folderCreatedButIsFile; ///< an errno value
};

const PlatformErrors& platformErrors();

} // namespace orvane::test
