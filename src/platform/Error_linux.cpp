#include "platform/Error.h"

namespace orvane::platform {

std::string genericErrorDescription(const std::string& domain, std::int64_t code) {
    return "The operation could not be completed. (" + domain + " error " + std::to_string(code) + ".)";
}

} // namespace orvane::platform
