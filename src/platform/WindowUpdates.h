#pragma once

#include <cstddef>
#include <functional>

namespace orvane::platform {

/// What an update changes, by identity: of two updates with one subject the later one decides what is shown.
using UpdateSubject = const void*;

/// From this many waiting updates on, `waitForRoom` waits until half of them have run.
inline constexpr std::size_t kMostUpdatesWaiting = 512;

/// Submits a change of the window to the main queue, behind all items submitted before. Returns at once, from
/// any thread.
///
/// While the main queue is held, the update takes the place of a waiting one with the same subject that was
/// submitted under the same hold: nothing is painted in between, so only the last value counts. The updates
/// that wait behind an alert are thus no more than there are subjects.
void submitUpdate(UpdateSubject subject, std::function<void()> work);

/// Bounds the backlog of a thread that may be faster than the main thread, which calls this after each of its
/// updates: waits when `kMostUpdatesWaiting` updates or more wait for the main thread. Returns at once while
/// the main queue is held, and as soon as it is. Any thread but the main one.
void waitForRoom();

/// Holds the main queue: made just before a modal alert is run or submitted as an item of the main queue, and
/// kept until that alert has ended. What is submitted meanwhile runs after it. Any thread; holds may overlap.
class MainQueueHold {
public:
    MainQueueHold();
    ~MainQueueHold();
    MainQueueHold(const MainQueueHold&) = delete;
    MainQueueHold& operator=(const MainQueueHold&) = delete;
};

} // namespace orvane::platform
