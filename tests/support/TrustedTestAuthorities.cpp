#include "tests/support/TrustedTestAuthorities.h"

#include "platform/SharedField.h"
#include "platform/TrustedAuthorities_linux.h"

namespace orvane {

namespace {

SharedField<std::string>& trustedFile() {
    static auto* const file = new SharedField<std::string>; // outlives every session's thread
    return *file;
}

} // namespace

void test::trustAuthoritiesOf(const std::string& pemFile) { trustedFile().store(pemFile); }

std::string platform::trustedAuthoritiesFile() { return trustedFile().load(); }

} // namespace orvane
