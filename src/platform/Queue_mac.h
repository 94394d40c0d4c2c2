#pragma once

#include <functional>

namespace orvane::platform {

/// Runs `work` on the main thread and returns when it is done: at once when called there, else as an item of
/// the main queue. The caller must not be what the main thread waits for.
void runOnMainThreadAndWait(const std::function<void()>& work);

} // namespace orvane::platform
