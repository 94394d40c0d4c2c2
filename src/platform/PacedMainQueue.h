#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace orvane::platform {

/// A way into the main queue for a thread that may be faster than the main thread: so many items of its may
/// wait there, and no more. Any thread but the main one, which would wait for itself.
class PacedMainQueue {
public:
    explicit PacedMainQueue(std::size_t mostWaiting);

    /// Submits `work` to the main queue, behind all items submitted before. When `mostWaiting` items
    /// submitted here wait for their turn, first waits until half of them had it.
    void submit(std::function<void()> work);

private:
    class Room;
    class Place;
    std::shared_ptr<Room> room_; ///< shared with the items
};

} // namespace orvane::platform
