#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace orvane::test {

/// The longest that a test waits for something that must come; reached only when the test fails.
inline constexpr std::chrono::seconds kPatience{60};

/// Closed at first; whoever waits at it goes on once it was opened. Any thread. Copies are the same gate, so
/// a thread that may outlive the test's own variables takes one along.
class Gate {
public:
    void open() const {
        const std::lock_guard lock(state_->mutex);
        state_->isOpen = true;
        state_->opened.notify_all();
    }

    /// Answers whether it was opened in time.
    bool wait(std::chrono::milliseconds limit = kPatience) const {
        const auto state = state_;
        std::unique_lock lock(state->mutex);
        return state->opened.wait_for(lock, limit, [&state] { return state->isOpen; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable opened;
        bool isOpen = false;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace orvane::test
