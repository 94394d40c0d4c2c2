#include "tests/support/TlsServer.h"

#include <array>
#include <charconv>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace orvane::test {

namespace {

constexpr std::string_view kEndOfHead = "\r\n\r\n";
constexpr std::string_view kContentLength = "Content-Length: ";

/// How long the body is that follows `head`; 0 without a Content-Length.
std::size_t bodyLength(std::string_view head) {
    const std::size_t position = head.find(kContentLength);
    std::size_t length = 0;
    if (position != std::string_view::npos) {
        const std::string_view digits = head.substr(position + kContentLength.size());
        std::from_chars(digits.data(), digits.data() + digits.size(), length);
    }
    return length;
}

bool isWholeRequest(const std::string& request) {
    const std::size_t headEnd = request.find(kEndOfHead);
    return headEnd != std::string::npos &&
           request.size() >= headEnd + kEndOfHead.size() + bodyLength(request.substr(0, headEnd));
}

/// A client that leaves while it is written to must not end the test program.
void blockBrokenPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace

TlsConnection::TlsConnection(SSL_CTX* context, int socket) : socket_(socket), session_(SSL_new(context)) {
    SSL_set_fd(session_.get(), socket_);
}

TlsConnection::~TlsConnection() { ::close(socket_); }

bool TlsConnection::accept() { return SSL_accept(session_.get()) == 1; }

std::string TlsConnection::acceptAsProxy() const {
    constexpr std::string_view kGranted = "HTTP/1.1 200 Connection established\r\n\r\n";
    std::string request;
    std::array<char, 4096> piece{};
    while (!request.ends_with(kEndOfHead)) {
        const ssize_t received = ::recv(socket_, piece.data(), piece.size(), 0);
        if (received <= 0) {
            break;
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    ::send(socket_, kGranted.data(), kGranted.size(), MSG_NOSIGNAL);
    return request;
}

std::string TlsConnection::readRequest() {
    std::string request;
    std::array<char, 16384> piece{};
    while (!isWholeRequest(request)) {
        const int received = SSL_read(session_.get(), piece.data(), static_cast<int>(piece.size()));
        if (received <= 0) {
            return {};
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    return request;
}

bool TlsConnection::send(std::string_view bytes) {
    return bytes.empty() || SSL_write(session_.get(), bytes.data(), static_cast<int>(bytes.size())) > 0;
}

void TlsConnection::end() {
    if (!isDropped_) {
        SSL_shutdown(session_.get());
    }
    ::shutdown(socket_, SHUT_RDWR);
}

void TlsConnection::waitForClientToLeave() {
    char byte = 0;
    while (SSL_read(session_.get(), &byte, 1) > 0) {
    }
}

void TlsConnection::interrupt() const { ::shutdown(socket_, SHUT_RDWR); }

TlsServer::TlsServer(Identity identity, Conversation conversation, Manner manner)
    : identity_(std::move(identity)),
      context_(SSL_CTX_new(TLS_server_method())),
      conversation_(std::move(conversation)),
      manner_(manner) {
    SSL_CTX_use_certificate(context_.get(), identity_.certificate.get());
    SSL_CTX_use_PrivateKey(context_.get(), identity_.key.get());
    acceptance_ = std::thread([this] { acceptConnections(); });
}

TlsServer::~TlsServer() {
    ::shutdown(listener_.socket(), SHUT_RDWR);
    acceptance_.join();
    for (TlsConnection& connection : connections_) {
        connection.interrupt();
    }
    for (std::thread& conversation : conversations_) {
        conversation.join();
    }
}

std::string TlsServer::url(const std::string& pathAndQuery) const {
    return "https://127.0.0.1:" + std::to_string(listener_.port()) + pathAndQuery;
}

void TlsServer::acceptConnections() {
    blockBrokenPipeSignal();
    for (;;) {
        const int socket = ::accept4(listener_.socket(), nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            return;
        }
        ++connectionCount_;
        TlsConnection& connection = connections_.emplace_back(context_.get(), socket);
        conversations_.emplace_back([this, &connection] { serve(connection); });
    }
}

void TlsServer::serve(TlsConnection& connection) {
    if (manner_ == Manner::behindProxy) {
        proxyRequest_.store(connection.acceptAsProxy());
    }
    if (connection.accept()) {
        conversation_(connection);
    }
    connection.end();
}

} // namespace orvane::test
