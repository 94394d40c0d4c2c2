#include "platform/Bundle.h"

#include "platform/Foundation_mac.h"

namespace orvane::platform {

std::optional<std::string> ownVersion() {
    @autoreleasepool {
        const id version = [NSBundle.mainBundle objectForInfoDictionaryKey:@"CFBundleShortVersionString"];
        if (![version isKindOfClass:NSString.class]) {
            return std::nullopt;
        }
        return fromNSString(version);
    }
}

} // namespace orvane::platform
