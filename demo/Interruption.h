#pragma once

#include <chrono>

namespace orvane::demo {

/// Notices SIGINT, once it was made, instead of being ended by it. One a process; one thread.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Waits for the signal, at most `limit`. True at once if it came before.
    bool arrivesWithin(std::chrono::milliseconds limit) const;

private:
    int readEnd_ = -1;
};

} // namespace orvane::demo
