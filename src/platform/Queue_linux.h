#pragma once

#include <functional>

namespace orvane::platform {

/// Lets the main queue run its items on the thread that makes this object, which is the main thread from then
/// on. Needs the application object and must not outlive it. Work submitted before or after just waits.
class MainQueueService {
public:
    MainQueueService();
    ~MainQueueService();
    MainQueueService(const MainQueueService&) = delete;
    MainQueueService& operator=(const MainQueueService&) = delete;
};

/// Runs `work` on the main thread and returns when it is done: at once when called there, else as an item of
/// the main queue, behind all items submitted before. The caller must not be what the main thread waits for.
void runOnMainThreadAndWait(const std::function<void()>& work);

} // namespace orvane::platform
