#include "platform/BoundedRequest.h"

#include "platform/ProgrammingError.h"
#include "platform/Url.h"

#include <memory>
#include <semaphore>
#include <utility>

namespace orvane::platform {

namespace {

constexpr std::size_t kLargestBody = std::size_t{64} << 20;

/// Receives the one task of a session. The session holds it weakly: after a timeout a late answer is dropped.
class ResultCollector final : public UrlSessionDataDelegate {
public:
    explicit ResultCollector(ResponseBody wanted) : wanted_(wanted) {}

    ResponseDisposition didReceiveResponse(UrlSessionDataTask& /*dataTask*/,
                                           std::int64_t /*expectedContentLength*/) override {
        return ResponseDisposition::allow;
    }

    void didReceiveData(UrlSessionDataTask& dataTask, ByteView data) override {
        if (wanted_ == ResponseBody::discard) {
            return;
        }
        if (data.size() > kLargestBody - body_.size()) {
            tooLarge_ = true;
            dataTask.cancel();
            return;
        }
        body_.insert(body_.end(), data.begin(), data.end());
    }

    void didComplete(UrlSessionDataTask& /*task*/, const std::optional<Error>& error) override {
        if (tooLarge_) {
            result_ = Error("OrvaneBootstrap", 413, "The answer is larger than 64 MiB");
        } else if (error) {
            result_ = *error;
        } else {
            result_ = std::move(body_);
        }
        completed_.release();
    }

    bool waitFor(std::chrono::milliseconds limit) { return completed_.try_acquire_for(limit); }

    /// Only after `waitFor` has answered true.
    ResultType<Bytes> takeResult() { return std::move(result_); }

private:
    const ResponseBody wanted_;
    Bytes body_;
    bool tooLarge_ = false;
    ResultType<Bytes> result_;
    std::binary_semaphore completed_{0};
};

} // namespace

ResultType<Bytes> performRequest(UrlRequest request, std::chrono::milliseconds waitLimit, ResponseBody body) {
    if (!parsesAsUrl(request.url)) {
        programmingError("a request's address is not a URL: " + request.url);
    }
    const auto collector = std::make_shared<ResultCollector>(body);
    const auto session = UrlSession::create(
        {.requestCachePolicy = CachePolicy::reloadIgnoringLocalCacheData, .urlCache = false}, collector);
    session->dataTask(std::move(request))->resume();
    if (!collector->waitFor(waitLimit)) {
        return Error("", 408, "Request timeout");
    }
    return collector->takeResult();
}

} // namespace orvane::platform
