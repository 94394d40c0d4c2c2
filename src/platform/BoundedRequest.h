#pragma once

#include "platform/Bytes.h"
#include "platform/ResultType.h"
#include "platform/UrlSession.h"

#include <chrono>

namespace orvane::platform {

enum class ResponseBody {
    keep,   ///< at most 64 MiB; a larger one is an error
    discard ///< of any size; the result holds no bytes
};

/// Carries out one request in a session of its own that keeps no cache, waits for its end, at most
/// `waitLimit`, and returns the body or an error.
///
/// After `waitLimit` that is the error with the empty domain, code 408 and "Request timeout"; the transfer is
/// not cancelled, and whatever it still brings is dropped. HTTP status and headers are not looked at. A URL
/// that does not parse is a programming error. Any thread but one that must not block.
ResultType<Bytes> performRequest(UrlRequest request, std::chrono::milliseconds waitLimit,
                                 ResponseBody body = ResponseBody::keep);

} // namespace orvane::platform
