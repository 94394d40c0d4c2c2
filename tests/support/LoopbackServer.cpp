#include "tests/support/LoopbackServer.h"

#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <optional>
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

LoopbackConnection::LoopbackConnection(int socket, std::unique_ptr<LoopbackStream> stream)
    : socket_(socket), stream_(std::move(stream)) {}

LoopbackConnection::~LoopbackConnection() { ::close(socket_); }

std::string LoopbackConnection::readRequest() {
    std::string request;
    std::array<char, 16384> piece{};
    while (!isWholeRequest(request)) {
        const std::ptrdiff_t received = stream_->read(piece);
        if (received <= 0) {
            return {};
        }
        request.append(piece.data(), static_cast<std::size_t>(received));
    }
    return request;
}

bool LoopbackConnection::send(std::string_view bytes) { return bytes.empty() || stream_->write(bytes); }

void LoopbackConnection::end() {
    if (!isDropped_) {
        stream_->sayGoodBye();
    }
    ::shutdown(socket_, SHUT_RDWR);
}

void LoopbackConnection::waitForClientToLeave() {
    std::array<char, 1> byte{};
    while (stream_->read(byte) > 0) {
    }
}

void LoopbackConnection::interrupt() const { ::shutdown(socket_, SHUT_RDWR); }

LoopbackServer::LoopbackServer(Conversation conversation, std::shared_ptr<LoopbackTransport> transport)
    : conversation_(std::move(conversation)), transport_(std::move(transport)) {
    acceptance_ = std::thread([this] { acceptConnections(); });
}

LoopbackServer::~LoopbackServer() {
    listener_.stop();
    acceptance_.join();
    for (LoopbackConnection& connection : connections_) {
        connection.interrupt();
    }
    for (std::thread& conversation : conversations_) {
        conversation.join();
    }
}

std::string LoopbackServer::url(const std::string& pathAndQuery) const {
    return transport_->scheme() + "://127.0.0.1:" + std::to_string(listener_.port()) + pathAndQuery;
}

void LoopbackServer::acceptConnections() {
    blockBrokenPipeSignal();
    while (const std::optional<int> socket = listener_.accept()) {
        ++connectionCount_;
        LoopbackConnection& connection = connections_.emplace_back(*socket, transport_->streamOver(*socket));
        conversations_.emplace_back([this, &connection] { serve(connection); });
    }
}

void LoopbackServer::serve(LoopbackConnection& connection) const {
    if (connection.accept()) {
        conversation_(connection);
    }
    connection.end();
}

} // namespace orvane::test
