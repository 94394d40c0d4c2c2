#include "platform/Error.h"

#include "platform/Foundation_mac.h"

namespace orvane::platform {

std::string genericErrorDescription(const std::string& domain, std::int64_t code) {
    @autoreleasepool {
        return fromNSString(
            [NSError errorWithDomain:toNSString(domain) code:code userInfo:nil].localizedDescription);
    }
}

} // namespace orvane::platform
