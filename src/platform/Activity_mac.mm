#include "platform/Activity.h"

#include "platform/Foundation_mac.h"

namespace orvane::platform {

/// `NSActivityUserInitiated` keeps the machine from sleeping and the process from App Nap and from sudden and
/// automatic termination.
void beginActivity(const std::string& reason) {
    @autoreleasepool {
        // The activity lasts as long as this object (NSProcessInfo, beginActivityWithOptions:reason:).
        [[maybe_unused]] static const id<NSObject> kActivity =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiated
                                                         reason:toNSString(reason)];
    }
}

} // namespace orvane::platform
