#include "platform/PacedMainQueue.h"

#include "platform/Queue.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace orvane::platform {

class PacedMainQueue::Room {
public:
    explicit Room(std::size_t places) : freePlaces_(places), worthGoingOn_((places + 1) / 2) {}

    void take() {
        std::unique_lock lock(mutex_);
        if (freePlaces_ == 0) {
            roomIsFree_.wait(lock, [this] { return freePlaces_ >= worthGoingOn_; });
        }
        --freePlaces_;
    }

    void give() {
        const std::lock_guard lock(mutex_);
        if (++freePlaces_ == worthGoingOn_) {
            roomIsFree_.notify_all();
        }
    }

private:
    std::mutex mutex_;
    std::condition_variable roomIsFree_;
    std::size_t freePlaces_;
    const std::size_t worthGoingOn_; ///< so that the two threads do not wake each other for every item
};

/// An item's, from its submission until it has run or was dropped unrun.
class PacedMainQueue::Place {
public:
    explicit Place(std::shared_ptr<Room> room) : room_(std::move(room)) { room_->take(); }
    ~Place() { room_->give(); }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

private:
    const std::shared_ptr<Room> room_;
};

PacedMainQueue::PacedMainQueue(std::size_t mostWaiting) : room_(std::make_shared<Room>(mostWaiting)) {}

void PacedMainQueue::submit(std::function<void()> work) {
    mainQueueAsync([place = std::make_shared<Place>(room_), work = std::move(work)] { work(); });
}

} // namespace orvane::platform
