#include "platform/Bundle.h"

#include "config/VendorValues.h"

namespace orvane::platform {

std::optional<std::string> ownVersion() { return vendor::kOwnVersion; }

} // namespace orvane::platform
