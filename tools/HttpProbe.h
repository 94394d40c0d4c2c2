#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace orvane::tools {

/// What a server answers besides the body.
struct HttpAnswer {
    std::string url; ///< the last one, after redirects
    long status = 0;
    std::map<std::string, std::string> headers;                          ///< names in lower case
    std::string beginning;                                               ///< of the body, at most 4096 bytes
    std::optional<std::chrono::system_clock::time_point> certificateEnd; ///< the earliest end in the chain

    std::optional<std::string> header(const std::string& name) const;
};

/// Requests an HTTPS address and stops once it has the beginning of the body. Trusts the same authorities as
/// the program's sessions. Throws `platform::Error`. Blocks for at most 30 seconds.
HttpAnswer probe(const std::string& url);

} // namespace orvane::tools
