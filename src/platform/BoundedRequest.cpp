#include "platform/BoundedRequest.h"

#include "platform/ProgrammingError.h"
#include "platform/Url.h"

#include <memory>
#include <semaphore>
#include <utility>

namespace orvane::platform {

namespace {

constexpr std::size_t kLargestBody = std::size_t{64} << 20;

/// Keeps what the one task of a session brings. The session holds it weakly: once the waiter has given up, a
/// late answer finds nobody.
class OutcomeCollector final : public UrlSessionDataDelegate {
public:
    ResponseDisposition didReceiveResponse(UrlSessionDataTask& /*dataTask*/,
                                           std::int64_t /*expectedContentLength*/) override {
        return ResponseDisposition::allow;
    }

    void didReceiveData(UrlSessionDataTask& dataTask, ByteView data) override {
        if (data.size() > kLargestBody - body_.size()) {
            tooLarge_ = true;
            dataTask.cancel();
            return;
        }
        body_.insert(body_.end(), data.begin(), data.end());
    }

    void didComplete(UrlSessionDataTask& /*task*/, const std::optional<Error>& error) override {
        if (tooLarge_) {
            outcome_.error = Error("OrvaneBootstrap", 413, "The answer is larger than 64 MiB");
        } else if (error) {
            outcome_.error = error;
        } else {
            outcome_.body = std::move(body_);
        }
        completed_.release();
    }

    bool waitFor(std::chrono::milliseconds limit) { return completed_.try_acquire_for(limit); }

    /// Only after `waitFor` has answered true.
    RequestOutcome takeOutcome() { return std::move(outcome_); }

private:
    Bytes body_;
    bool tooLarge_ = false;
    RequestOutcome outcome_;
    std::binary_semaphore completed_{0};
};

} // namespace

RequestOutcome performRequest(UrlRequest request, std::chrono::milliseconds waitLimit) {
    if (!parsesAsUrl(request.url)) {
        programmingError("a request's address is not a URL: " + request.url);
    }
    const auto collector = std::make_shared<OutcomeCollector>();
    const auto session = UrlSession::create(
        {.requestCachePolicy = CachePolicy::reloadIgnoringLocalCacheData, .urlCache = false}, collector);
    session->dataTask(std::move(request))->resume();
    if (!collector->waitFor(waitLimit)) {
        return {.body = std::nullopt, .error = Error("", 408, "Request timeout")};
    }
    return collector->takeOutcome();
}

} // namespace orvane::platform
