#include "platform/Error.h"

#include "platform/Foundation_mac.h"

#include <system_error>

namespace orvane::platform {

std::string errorNumberDescription(int errorNumber) { return std::generic_category().message(errorNumber); }

std::string genericErrorDescription(const std::string& domain, std::int64_t code) {
    @autoreleasepool {
        return fromNSString(
            [NSError errorWithDomain:toNSString(domain) code:code userInfo:nil].localizedDescription);
    }
}

std::string debugDescriptionOf(const std::string& domain, std::int64_t code,
                               const std::string& localizedDescription) {
    @autoreleasepool {
        NSDictionary* const userInfo = @{NSLocalizedDescriptionKey : toNSString(localizedDescription)};
        return fromNSString(
            [NSError errorWithDomain:toNSString(domain) code:code userInfo:userInfo].description);
    }
}

} // namespace orvane::platform
