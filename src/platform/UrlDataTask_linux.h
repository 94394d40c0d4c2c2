#pragma once

#include "platform/UrlSession.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace orvane::platform {

class UrlWorker;

/// A task as those who asked for it hold it. It only keeps what they want; the worker acts on it.
class UrlDataTask final : public UrlSessionDataTask, public std::enable_shared_from_this<UrlDataTask> {
public:
    UrlDataTask(UrlRequest request, std::shared_ptr<UrlWorker> worker);

    std::optional<std::string> originalRequestUrl() const override;
    void resume() override;
    void suspend() override;
    void cancel() override;

    const UrlRequest& request() const { return request_; }
    bool isSuspended() const { return suspended_; }
    bool isCancelled() const { return cancelled_; }

private:
    void tellWorker();

    const UrlRequest request_;
    const std::shared_ptr<UrlWorker> worker_;
    std::atomic<bool> suspended_ = true;
    std::atomic<bool> cancelled_ = false;
    std::atomic<bool> handedOver_ = false;
};

} // namespace orvane::platform
