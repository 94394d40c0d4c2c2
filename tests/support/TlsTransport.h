#pragma once

#include "platform/SharedField.h"
#include "tests/support/LoopbackTransport.h"
#include "tests/support/TestAuthority.h"

#include <memory>
#include <openssl/ssl.h>
#include <string>

namespace orvane::test {

/// Speaks TLS and proves a name with an identity.
class TlsTransport final : public LoopbackTransport {
public:
    /// `direct` speaks TLS at once; `behindProxy` first plays the proxy through which a client asks to be
    /// connected.
    enum class Manner { direct, behindProxy };

    explicit TlsTransport(Identity identity, Manner manner = Manner::direct);

    std::string scheme() const override { return "https"; }
    std::unique_ptr<LoopbackStream> streamOver(int socket) override;

    /// What the latest client asked of the proxy.
    std::string proxyRequest() const { return proxyRequest_.load(); }

private:
    struct ContextDeleter {
        void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    };
    class Stream;

    const Identity identity_;
    const std::unique_ptr<SSL_CTX, ContextDeleter> context_;
    const Manner manner_;
    SharedField<std::string> proxyRequest_;
};

/// The authority that sessions believe once the believed transport was asked for, and its PEM file.
const TestAuthority& knownAuthority();
std::string knownAuthorityFile();

} // namespace orvane::test
