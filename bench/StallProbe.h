#pragma once

#include <atomic>
#include <memory>

namespace orvane::bench {

/// How long the main thread kept others waiting.
struct Stalls {
    std::atomic<double> longestEventWait = 0; ///< seconds until a posted event had its turn
    std::atomic<double> longestItemWait = 0;  ///< seconds until an item of the main queue had its turn
};

/// Watches the main thread from now on to the end of the process: posts an event and an item and, once both
/// had their turn, the next ones. To be called on the main thread, with the application running.
std::shared_ptr<const Stalls> watchMainThread();

} // namespace orvane::bench
