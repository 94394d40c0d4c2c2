#include "platform/Error.h"

#include <utility>

namespace orvane::platform {

Error::Error(std::string domain, std::int64_t code, std::string localizedDescription)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)),
      debugDescription_(debugDescriptionOf(domain_, code_, localizedDescription_)) {}

Error::Error(std::string domain, std::int64_t code, std::string localizedDescription,
             std::string debugDescription)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)),
      debugDescription_(std::move(debugDescription)) {}

Error posixError(int errorNumber, const std::string& subject) {
    return {"POSIX", errorNumber, subject + ": " + errorNumberDescription(errorNumber)};
}

} // namespace orvane::platform
