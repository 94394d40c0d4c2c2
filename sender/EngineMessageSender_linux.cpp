#include "sender/EngineMessageConnection.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvane::connection {

namespace {

constexpr std::size_t kTypeSize = 4;
constexpr std::size_t kDatagramSize = kTypeSize + ORVANE_SENDER_TEXT_LIMIT + 1;

static_assert(ORVANE_SENDER_NAME_LIMIT + 1 == sizeof(sockaddr_un::sun_path));

} // namespace

/// The service's address is abstract, see unix(7): a leading NUL, then the name, ended by the address's
/// length.
const char* open(orvane_sender& sender) {
    const std::size_t nameSize = std::strlen(sender.serviceName);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, sender.serviceName, nameSize);
    const auto addressSize = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + nameSize);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return std::strerror(errno);
    }
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), addressSize) != 0) {
        const int errorNumber = errno;
        ::close(descriptor);
        return std::strerror(errorNumber);
    }
    sender.endpoint = descriptor;
    return nullptr;
}

const char* deliver(const orvane_sender& sender, std::int32_t type, const char* text, std::size_t textSize) {
    char datagram[kDatagramSize] = {};
    const auto number = static_cast<std::uint32_t>(type);
    for (std::size_t index = 0; index < kTypeSize; ++index) {
        datagram[index] = static_cast<char>((number >> (8 * index)) & 0xFFU);
    }
    std::memcpy(datagram + kTypeSize, text, textSize);
    ssize_t sent = -1;
    do {
        sent = ::send(static_cast<int>(sender.endpoint), datagram, sizeof datagram, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? std::strerror(errno) : nullptr;
}

void close(const orvane_sender& sender) { ::close(static_cast<int>(sender.endpoint)); }

} // namespace orvane::connection
