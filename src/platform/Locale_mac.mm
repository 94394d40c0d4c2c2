#include "platform/Locale.h"

#include "platform/Foundation_mac.h"

namespace orvane::platform {

std::vector<std::string> preferredLanguages() {
    @autoreleasepool {
        return fromNSArray(NSLocale.preferredLanguages);
    }
}

} // namespace orvane::platform
