#include "platform/Error.h"

#include <cstring>

namespace orvane::platform {

/// glibc's strerror follows the locale; its two newer functions do not.
std::string errorNumberDescription(int errorNumber) {
    const char* const name = ::strerrorname_np(errorNumber);
    if (name == nullptr) {
        return "Unknown error " + std::to_string(errorNumber);
    }
    return std::string(::strerrordesc_np(errorNumber)) + " (" + name + ")";
}

std::string genericErrorDescription(const std::string& domain, std::int64_t code) {
    return "The operation could not be completed. (" + domain + " error " + std::to_string(code) + ".)";
}

std::string debugDescriptionOf(const std::string& domain, std::int64_t code,
                               const std::string& localizedDescription) {
    return "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" + localizedDescription + "\"";
}

} // namespace orvane::platform
