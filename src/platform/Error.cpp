#include "platform/Error.h"

#include <system_error>
#include <utility>

namespace orvane::platform {

Error::Error(std::string domain, std::int64_t code, std::string localizedDescription)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)),
      debugDescription_("Error Domain=" + domain_ + " Code=" + std::to_string(code_) + " \"" +
                        localizedDescription_ + "\"") {}

Error::Error(std::string domain, std::int64_t code, std::string localizedDescription,
             std::string debugDescription)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)),
      debugDescription_(std::move(debugDescription)) {}

Error posixError(int errorNumber, const std::string& subject) {
    return {"POSIX", errorNumber, subject + ": " + std::generic_category().message(errorNumber)};
}

} // namespace orvane::platform
