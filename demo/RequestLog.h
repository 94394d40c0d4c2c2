#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>

namespace orvane::demo {

/// A request as far as a log tells it.
struct LoggedRequest {
    std::string method;
    std::string target; ///< path and query as they came
    std::multimap<std::string, std::string> headers;
    std::string reason; ///< why it was not expected; empty otherwise
};

/// A file of one JSON line a request, each whole when `add` returns. Begins anew with each object; the file
/// appears with the first line. Any thread.
class RequestLog {
public:
    explicit RequestLog(std::filesystem::path file);

    void add(const LoggedRequest& request);

private:
    std::filesystem::path file_;
    std::mutex mutex_;
};

} // namespace orvane::demo
