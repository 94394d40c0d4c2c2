#include "platform/WindowUpdates.h"

#include "platform/Queue.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace orvane::platform {

namespace {

using Work = std::function<void()>;
using SharedWork = std::shared_ptr<Work>; ///< guarded by the backlog's mutex; empty once it was taken to run

/// A waiting thread goes on when so few wait: the two threads would otherwise wake each other for each
/// update.
constexpr std::size_t kWorthGoingOn = kMostUpdatesWaiting / 2;

/// The updates of this process that the main thread has not run yet.
struct Backlog {
    std::mutex mutex;
    std::condition_variable roomOrHold;
    std::size_t waiting = 0;
    int holds = 0;
    std::map<UpdateSubject, SharedWork> replaceable; ///< what was submitted under the latest hold
};

/// Never destroyed: threads may submit updates while the process ends.
Backlog& backlog() {
    static auto* const instance = new Backlog;
    return *instance;
}

/// An item of the main queue: counts as waiting from its submission until it has run or was dropped unrun.
class WaitingUpdate {
public:
    explicit WaitingUpdate(SharedWork work) : work_(std::move(work)) {
        const std::lock_guard lock(backlog().mutex);
        ++backlog().waiting;
    }

    ~WaitingUpdate() {
        const std::lock_guard lock(backlog().mutex);
        if (--backlog().waiting == kWorthGoingOn) {
            backlog().roomOrHold.notify_all();
        }
    }

    WaitingUpdate(const WaitingUpdate&) = delete;
    WaitingUpdate& operator=(const WaitingUpdate&) = delete;

    void run() {
        Work taken;
        {
            const std::lock_guard lock(backlog().mutex);
            taken.swap(*work_);
        }
        taken();
    }

private:
    const SharedWork work_;
};

/// The work of a new item; null if `work` took the place of an update that waits, and now holds the replaced
/// one.
SharedWork makeOrReplace(UpdateSubject subject, Work& work) {
    const std::lock_guard lock(backlog().mutex);
    if (backlog().holds == 0) {
        return std::make_shared<Work>(std::move(work));
    }
    SharedWork& last = backlog().replaceable[subject];
    if (last && *last) {
        last->swap(work);
        return nullptr;
    }
    last = std::make_shared<Work>(std::move(work));
    return last;
}

} // namespace

void submitUpdate(UpdateSubject subject, std::function<void()> work) {
    if (SharedWork shared = makeOrReplace(subject, work)) {
        mainQueueAsync([update = std::make_shared<WaitingUpdate>(std::move(shared))] { update->run(); });
    }
}

void waitForRoom() {
    std::unique_lock lock(backlog().mutex);
    if (backlog().waiting >= kMostUpdatesWaiting) {
        backlog().roomOrHold.wait(lock,
                                  [] { return backlog().waiting <= kWorthGoingOn || backlog().holds > 0; });
    }
}

/// What waits from before this hold is in front of the alert and stays as it is.
MainQueueHold::MainQueueHold() {
    std::map<UpdateSubject, SharedWork> fromEarlierHolds; // destroyed after the mutex is free again
    const std::lock_guard lock(backlog().mutex);
    ++backlog().holds;
    fromEarlierHolds.swap(backlog().replaceable);
    backlog().roomOrHold.notify_all();
}

MainQueueHold::~MainQueueHold() {
    const std::lock_guard lock(backlog().mutex);
    --backlog().holds;
}

} // namespace orvane::platform
