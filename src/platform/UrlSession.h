#pragma once

#include "platform/Bytes.h"
#include "platform/Error.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane::platform {

enum class CachePolicy { useProtocolCachePolicy = 0, reloadIgnoringLocalCacheData = 1 };

struct UrlRequest {
    std::string url;
    std::string httpMethod = "GET";
    std::vector<std::pair<std::string, std::string>> httpHeaderFields = {};
    std::string httpBody = {};
    CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;
    std::chrono::seconds timeoutInterval{60}; ///< longest wait for further data
};

struct UrlSessionConfiguration {
    CachePolicy requestCachePolicy = CachePolicy::useProtocolCachePolicy;
    bool urlCache = true; ///< false: nothing is kept between requests
};

/// One transfer. Shared by whoever asked for it and by the session that carries it out; its address is its
/// identity in delegate callbacks. Any thread.
class UrlSessionDataTask {
public:
    virtual ~UrlSessionDataTask() = default;

    /// The URL asked for, before any redirect.
    virtual std::optional<std::string> originalRequestUrl() const = 0;

    virtual void resume() = 0;  ///< starts the transfer, or goes on with a suspended one
    virtual void suspend() = 0; ///< holds back the body until the next `resume`
    virtual void cancel() = 0;  ///< ends the transfer; it completes with an error
};

enum class ResponseDisposition { cancel = 0, allow = 1 };

/// Receives what a session's tasks bring, one call at a time, on the session's own serial queue. For each
/// task: the response, then data zero or more times, then completion exactly once; a task that fails before
/// its response only completes. A delegate may resume, suspend or cancel the task from within.
class UrlSessionDataDelegate {
public:
    virtual ~UrlSessionDataDelegate() = default;

    /// `expectedContentLength` is in bytes as they will be delivered, -1 when that is not known. After
    /// `cancel` no data follows and the task completes with an error.
    virtual ResponseDisposition didReceiveResponse(UrlSessionDataTask& dataTask,
                                                   std::int64_t expectedContentLength) = 0;

    /// `data` is only valid during the call.
    virtual void didReceiveData(UrlSessionDataTask& dataTask, ByteView data) = 0;

    /// Without an error when the whole body was delivered, whatever the HTTP status.
    virtual void didComplete(UrlSessionDataTask& task, const std::optional<Error>& error) = 0;
};

/// Carries out HTTPS transfers: redirects are followed to HTTPS only, certificates and host names are checked
/// against the system's authorities, the system's proxies are used, codings it asked for are decoded.
///
/// Destroying a session never waits: transfers that were started run to their end.
class UrlSession {
public:
    /// The delegate is held weakly; while it is gone, responses are accepted and what they bring is dropped.
    static std::unique_ptr<UrlSession> create(const UrlSessionConfiguration& configuration,
                                              std::weak_ptr<UrlSessionDataDelegate> delegate);

    virtual ~UrlSession() = default;

    /// A new task, not yet started. It keeps the request's body without a copy. Any thread.
    virtual std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request) = 0;
};

} // namespace orvane::platform
