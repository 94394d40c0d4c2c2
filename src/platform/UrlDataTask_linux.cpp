#include "platform/UrlDataTask_linux.h"

#include "platform/UrlWorker_linux.h"

#include <utility>

namespace orvane::platform {

UrlDataTask::UrlDataTask(UrlRequest request, std::shared_ptr<UrlWorker> worker)
    : request_(std::move(request)), worker_(std::move(worker)) {}

std::optional<std::string> UrlDataTask::originalRequestUrl() const {
    return request_.url.empty() ? std::nullopt : std::optional(request_.url);
}

void UrlDataTask::resume() {
    suspended_ = false;
    tellWorker();
}

void UrlDataTask::suspend() {
    suspended_ = true;
    if (handedOver_) {
        worker_->wake();
    }
}

void UrlDataTask::cancel() {
    cancelled_ = true;
    tellWorker();
}

void UrlDataTask::tellWorker() {
    if (handedOver_.exchange(true)) {
        worker_->wake();
    } else {
        worker_->add(shared_from_this());
    }
}

} // namespace orvane::platform
