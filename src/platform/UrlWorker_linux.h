#pragma once

#include "platform/UrlDataTask_linux.h"
#include "platform/UrlSession.h"
#include "platform/UrlTransfer_linux.h"

#include <curl/curl.h>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace orvane::platform {

/// Carries out the transfers of one session on a thread of its own, which is also the session's delegate
/// queue.
///
/// Shared by the session, its tasks and, while it runs, its thread. The thread begins with the first task and
/// ends once the session is gone and every task handed over has completed.
class UrlWorker final : public std::enable_shared_from_this<UrlWorker> {
public:
    explicit UrlWorker(std::weak_ptr<UrlSessionDataDelegate> delegate);

    /// Takes a task over; it stays with the worker until it has completed. Any thread, once for each task.
    void add(std::shared_ptr<UrlDataTask> task);

    /// Makes the worker look at what its tasks want. Any thread.
    void wake();

    /// Called by the session when it is destroyed. Never waits.
    void sessionIsGone();

private:
    void run();
    bool takeNewTasks();
    void performTransfers();
    void removeCompletedTransfers();
    void waitForNews();
    void endAllTransfers();

    struct MultiDeleter {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };
    const std::unique_ptr<CURLM, MultiDeleter> multi_;
    const std::weak_ptr<UrlSessionDataDelegate> delegate_;

    std::mutex mutex_; ///< guards the next three
    std::vector<std::shared_ptr<UrlDataTask>> newTasks_;
    bool threadRuns_ = false;
    bool sessionIsGone_ = false;

    std::list<UrlTransfer> transfers_; ///< the worker's thread alone
};

} // namespace orvane::platform
