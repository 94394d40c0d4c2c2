#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane::demo {

/// Lets waits of any thread end early, all at once and for good.
class StopSignal {
public:
    /// Waits for the given time. True when the signal was given before it was over.
    bool givenWithin(std::chrono::steady_clock::duration limit) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [this] { return given_; });
    }

    void give() {
        const std::lock_guard lock(mutex_);
        given_ = true;
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool given_ = false;
};

} // namespace orvane::demo
