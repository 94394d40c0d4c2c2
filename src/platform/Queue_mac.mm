#include "platform/Queue.h"

#include "platform/Queue_mac.h"

#import <Foundation/Foundation.h>

#include <dispatch/dispatch.h>
#include <utility>

namespace orvane::platform {

void mainQueueAsync(std::function<void()> work) {
    dispatch_async(dispatch_get_main_queue(), ^{
      @autoreleasepool {
          work();
      }
    });
}

bool isMainThread() { return NSThread.isMainThread; }

void utilityQueueAsync(std::function<void()> work) {
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0), ^{
      @autoreleasepool {
          work();
      }
    });
}

void runOnMainThreadAndWait(const std::function<void()>& work) {
    if (isMainThread()) {
        work();
        return;
    }
    const auto* const waiting = &work;
    dispatch_sync(dispatch_get_main_queue(), ^{
      (*waiting)();
    });
}

} // namespace orvane::platform
