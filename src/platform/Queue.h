#pragma once

#include <functional>

namespace orvane::platform {

/// Runs `work` on the main thread, after all work submitted before it. Returns at once, from any thread.
///
/// One item runs at a time: while an item runs a modal alert, the items behind it wait. An alert that an
/// event opened (a click, not an item) does not hold the queue up.
void mainQueueAsync(std::function<void()> work);

bool isMainThread();

/// Runs `work` on a background thread of its own accord and priority `utility`; items run side by side.
/// Returns at once, from any thread.
void utilityQueueAsync(std::function<void()> work);

} // namespace orvane::platform
