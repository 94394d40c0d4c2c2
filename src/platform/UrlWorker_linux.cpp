#include "platform/UrlWorker_linux.h"

#include <algorithm>
#include <chrono>
#include <clocale>
#include <limits>
#include <new>
#include <thread>
#include <utility>

namespace orvane::platform {

namespace {

CURLM* newMulti() {
    CURLM* multi = curl_multi_init();
    if (multi == nullptr) {
        throw std::bad_alloc();
    }
    return multi;
}

/// The library's messages contain the C library's, which follow the locale. Logs must not.
void speakEnglish() {
    static const locale_t locale = ::newlocale(LC_MESSAGES_MASK, "C", nullptr);
    ::uselocale(locale);
}

/// Rounded up, so that a wait for the deadline ends behind it.
int millisecondsUntil(UrlTransfer::Clock::time_point deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - UrlTransfer::Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

} // namespace

UrlWorker::UrlWorker(std::weak_ptr<UrlSessionDataDelegate> delegate)
    : multi_(newMulti()), delegate_(std::move(delegate)) {}

void UrlWorker::add(std::shared_ptr<UrlDataTask> task) {
    const std::lock_guard lock(mutex_);
    newTasks_.push_back(std::move(task));
    if (threadRuns_) {
        wake();
        return;
    }
    std::thread([self = shared_from_this()] { self->run(); }).detach();
    threadRuns_ = true;
}

void UrlWorker::wake() { curl_multi_wakeup(multi_.get()); }

void UrlWorker::sessionIsGone() {
    const std::lock_guard lock(mutex_);
    sessionIsGone_ = true;
    wake();
}

void UrlWorker::run() {
    speakEnglish();
    while (takeNewTasks()) {
        for (UrlTransfer& transfer : transfers_) {
            transfer.obeyTask();
        }
        performTransfers();
        removeCompletedTransfers();
        waitForNews();
    }
}

/// Answers false when there is nothing left to do, and never will be.
bool UrlWorker::takeNewTasks() {
    const std::lock_guard lock(mutex_);
    for (std::shared_ptr<UrlDataTask>& task : newTasks_) {
        transfers_.emplace_back(multi_.get(), std::move(task), delegate_);
    }
    newTasks_.clear();
    threadRuns_ = !transfers_.empty() || !sessionIsGone_;
    return threadRuns_;
}

void UrlWorker::performTransfers() {
    int running = 0;
    if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) {
        endAllTransfers();
    }
    int left = 0;
    while (const CURLMsg* news = curl_multi_info_read(multi_.get(), &left)) {
        if (news->msg == CURLMSG_DONE) {
            UrlTransfer::of(news->easy_handle).complete(news->data.result);
        }
    }
    for (UrlTransfer& transfer : transfers_) {
        transfer.watchProgress();
    }
}

void UrlWorker::removeCompletedTransfers() {
    if (transfers_.remove_if([](const UrlTransfer& transfer) { return transfer.isComplete(); }) > 0) {
        wake(); // it may have been the last one, so the next wait must not be a long one
    }
}

void UrlWorker::waitForNews() {
    int timeout = std::numeric_limits<int>::max();
    for (const UrlTransfer& transfer : transfers_) {
        if (const auto deadline = transfer.deadline()) {
            timeout = std::min(timeout, millisecondsUntil(*deadline));
        }
    }
    if (curl_multi_poll(multi_.get(), nullptr, 0, timeout, nullptr) != CURLM_OK) {
        endAllTransfers();
    }
}

/// The library itself has failed, for want of memory most likely.
void UrlWorker::endAllTransfers() {
    for (UrlTransfer& transfer : transfers_) {
        if (!transfer.isComplete()) {
            transfer.complete(CURLE_FAILED_INIT);
        }
    }
}

} // namespace orvane::platform
