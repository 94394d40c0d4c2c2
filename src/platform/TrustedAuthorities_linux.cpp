#include "platform/TrustedAuthorities_linux.h"

namespace orvane::platform {

std::string trustedAuthoritiesFile() { return {}; }

} // namespace orvane::platform
