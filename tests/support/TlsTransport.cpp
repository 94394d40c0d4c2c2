#include "tests/support/TlsTransport.h"

#include "tests/support/TemporaryFolder.h"

#include <array>
#include <sys/socket.h>
#include <utility>

namespace orvane::test {

class TlsTransport::Stream final : public LoopbackStream {
public:
    Stream(TlsTransport& transport, int socket)
        : transport_(transport), socket_(socket), session_(SSL_new(transport.context_.get())) {
        SSL_set_fd(session_.get(), socket_);
    }

    bool accept() override {
        if (transport_.manner_ == Manner::behindProxy) {
            transport_.proxyRequest_.store(acceptAsProxy());
        }
        return SSL_accept(session_.get()) == 1;
    }

    std::ptrdiff_t read(std::span<char> place) override {
        return SSL_read(session_.get(), place.data(), static_cast<int>(place.size()));
    }

    bool write(std::string_view bytes) override {
        return SSL_write(session_.get(), bytes.data(), static_cast<int>(bytes.size())) > 0;
    }

    void sayGoodBye() override { SSL_shutdown(session_.get()); }

private:
    struct SessionDeleter {
        void operator()(SSL* session) const { SSL_free(session); }
    };

    /// Reads what the client asks of the proxy and grants it.
    std::string acceptAsProxy() const;

    TlsTransport& transport_;
    const int socket_;
    const std::unique_ptr<SSL, SessionDeleter> session_;
};

std::string TlsTransport::Stream::acceptAsProxy() const {
    constexpr std::string_view kGranted = "HTTP/1.1 200 Connection established\r\n\r\n";
    std::string request;
    std::array<char, 4096> piece{};
    while (!request.ends_with("\r\n\r\n")) {
        const ssize_t received = ::recv(socket_, piece.data(), piece.size(), 0);
        if (received <= 0) {
            break;
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    ::send(socket_, kGranted.data(), kGranted.size(), 0);
    return request;
}

TlsTransport::TlsTransport(Identity identity, Manner manner)
    : identity_(std::move(identity)), context_(SSL_CTX_new(TLS_server_method())), manner_(manner) {
    SSL_CTX_use_certificate(context_.get(), identity_.certificate.get());
    SSL_CTX_use_PrivateKey(context_.get(), identity_.key.get());
}

std::unique_ptr<LoopbackStream> TlsTransport::streamOver(int socket) {
    return std::make_unique<Stream>(*this, socket);
}

namespace {

struct KnownAuthority {
    KnownAuthority() { authority.writeCertificate(file); }

    TestAuthority authority;
    TemporaryFolder folder;
    std::string file = folder.path() / "authority.pem";
};

const KnownAuthority& known() {
    static const KnownAuthority authority;
    return authority;
}

} // namespace

const TestAuthority& knownAuthority() { return known().authority; }

std::string knownAuthorityFile() { return known().file; }

} // namespace orvane::test
