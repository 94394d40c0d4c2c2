#pragma once

#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/UrlSession.h"

#include <chrono>
#include <optional>

namespace orvane::platform {

/// How a request ended for the one who waited: the whole body, or an error.
struct RequestOutcome {
    std::optional<Bytes> body;
    std::optional<Error> error;
};

/// Carries out one request in a session of its own that keeps no cache, and waits for its end, at most
/// `waitLimit`.
///
/// After that the outcome is the error with the empty domain, code 408 and "Request timeout"; the transfer is
/// not cancelled, and whatever it still brings is dropped. HTTP status and headers are not looked at. A body
/// of more than 64 MiB is refused with an error. An address that is not a URL is a programming error. Any
/// thread but one that must not block.
RequestOutcome performRequest(UrlRequest request, std::chrono::milliseconds waitLimit);

} // namespace orvane::platform
