#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane::test {

/// The longest that a test waits for something that must come; reached only when the test fails.
inline constexpr std::chrono::seconds kPatience{60};

/// Closed at first; whoever waits at it goes on once it was opened. Any thread.
class Gate {
public:
    void open() {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
        opened_.notify_all();
    }

    /// Answers whether it was opened in time.
    bool wait(std::chrono::milliseconds limit = kPatience) {
        std::unique_lock lock(mutex_);
        return opened_.wait_for(lock, limit, [this] { return isOpen_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

} // namespace orvane::test
