#include "platform/Locale.h"

#include "platform/Foundation_mac.h"
#include "platform/PreferredLanguages.h"

#include <cstdlib>

namespace orvane::platform {

std::vector<std::string> preferredLanguages() {
    if (const char* const handedOver = std::getenv(kPreferredLanguagesVariable); handedOver != nullptr) {
        return splitLanguages(handedOver);
    }
    @autoreleasepool {
        return fromNSArray(NSLocale.preferredLanguages);
    }
}

} // namespace orvane::platform
