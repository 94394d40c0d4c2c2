#include "platform/ProcessInfo.h"

#include "platform/Foundation_mac.h"

namespace orvane::platform {

std::int64_t processIdentifier() { return NSProcessInfo.processInfo.processIdentifier; }

std::string processName() {
    @autoreleasepool {
        return fromNSString(NSProcessInfo.processInfo.processName);
    }
}

} // namespace orvane::platform
