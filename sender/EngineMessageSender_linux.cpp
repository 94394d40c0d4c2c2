#include "sender/EngineMessageConnection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace orvane {

namespace {

constexpr std::size_t kTypeSize = 4;
using Datagram = std::array<char, kTypeSize + kEngineMessageTextLimit + 1>;

[[noreturn]] void fail(const std::string& what, const std::string& serviceName, int errorNumber) {
    throw EngineMessageError(what + " " + serviceName + ": " + std::generic_category().message(errorNumber));
}

Datagram encode(std::int32_t type, std::string_view text) {
    Datagram datagram{};
    const auto number = static_cast<std::uint32_t>(type);
    for (std::size_t index = 0; index < kTypeSize; ++index) {
        datagram[index] = static_cast<char>((number >> (8 * index)) & 0xFFU);
    }
    std::ranges::copy(text, datagram.begin() + kTypeSize);
    return datagram;
}

/// A socket connected to the abstract address of that name, see unix(7): a leading NUL, then the name, ended
/// by the address's length. Answers the socket, or the negated error number.
int connectedSocket(const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.empty() || name.size() >= sizeof(address.sun_path)) {
        return -EINVAL;
    }
    std::ranges::copy(name, std::begin(address.sun_path) + 1);
    const auto addressSize = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return -errno;
    }
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), addressSize) != 0) {
        const int errorNumber = errno;
        close(descriptor);
        return -errorNumber;
    }
    return descriptor;
}

} // namespace

EngineMessageSender::Connection::Connection(std::string_view serviceName)
    : serviceName_(serviceName), endpoint_(connectedSocket(serviceName_)) {
    if (endpoint_ < 0) {
        fail("cannot connect to", serviceName_, static_cast<int>(-endpoint_));
    }
}

EngineMessageSender::Connection::~Connection() { close(static_cast<int>(endpoint_)); }

void EngineMessageSender::Connection::deliver(std::int32_t type, std::string_view text) const {
    const Datagram datagram = encode(type, text);
    ssize_t sent = -1;
    do {
        sent = ::send(static_cast<int>(endpoint_), datagram.data(), datagram.size(), MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    if (sent < 0) {
        fail("cannot send to", serviceName_, errno);
    }
}

} // namespace orvane
