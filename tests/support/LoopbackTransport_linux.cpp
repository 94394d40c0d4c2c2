#include "tests/support/LoopbackTransport.h"

#include "tests/support/TlsTransport.h"
#include "tests/support/TrustedTestAuthorities.h"

namespace orvane::test {

std::shared_ptr<LoopbackTransport> believedTransport() {
    trustAuthoritiesOf(knownAuthorityFile());
    return std::make_shared<TlsTransport>(knownAuthority().issue("IP:127.0.0.1"));
}

} // namespace orvane::test
