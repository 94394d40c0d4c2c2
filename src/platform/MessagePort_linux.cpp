#include "platform/MessagePort.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

/// A port is a datagram socket, its number the descriptor's; result codes are errno values.
namespace orvane::platform {

namespace {

constexpr std::size_t kTypeSize = 4;

using Datagram = std::array<unsigned char, kTypeSize + kMessageTextSize>;

/// Room for the sender's credentials and nothing else: descriptors that a sender attaches find none, and the
/// kernel drops them (unix(7), SCM_RIGHTS).
using ControlBuffer = std::array<unsigned char, CMSG_SPACE(sizeof(ucred))>;

int descriptorOf(std::uint32_t port) { return static_cast<int>(port); }

std::uint32_t resultCode(int callResult) { return callResult < 0 ? static_cast<std::uint32_t>(errno) : 0; }

std::optional<uid_t> senderOf(msghdr& header) {
    for (cmsghdr* control = CMSG_FIRSTHDR(&header); control != nullptr;
         control = CMSG_NXTHDR(&header, control)) {
        if (control->cmsg_level == SOL_SOCKET && control->cmsg_type == SCM_CREDENTIALS) {
            ucred credentials{};
            std::memcpy(&credentials, CMSG_DATA(control), sizeof credentials);
            return credentials.uid;
        }
    }
    return std::nullopt;
}

bool maySend(std::optional<uid_t> sender) { return sender && (*sender == ::geteuid() || *sender == 0); }

ssize_t receiveDatagram(int socket, msghdr& header) {
    for (;;) {
        const ssize_t received = ::recvmsg(socket, &header, MSG_CMSG_CLOEXEC);
        if (received >= 0 || errno != EINTR) {
            return received;
        }
    }
}

EngineMessage messageOf(Datagram& datagram, std::size_t size) {
    std::fill(datagram.begin() + static_cast<std::ptrdiff_t>(size), datagram.end(), 0);
    std::uint32_t type = 0;
    for (std::size_t index = kTypeSize; index-- > 0;) {
        type = type << 8 | datagram[index];
    }
    EngineMessage message;
    message.type = static_cast<std::int32_t>(type);
    std::memcpy(message.text, datagram.data() + kTypeSize, kMessageTextSize);
    return message;
}

/// What other users have sent to this run's port. Anyone may send to an abstract address.
std::atomic<std::uint64_t> foreignMessages = 0;

/// Answers whether this one is the run's first. During a flood the receiver pauses now and then: its cost
/// stays a fraction of the sender's, and messages that may be sent wait for milliseconds at most.
bool isFirstForeignMessage() {
    constexpr std::uint64_t kMessagesBetweenPauses = 500;
    const std::uint64_t before = foreignMessages++;
    if ((before + 1) % kMessagesBetweenPauses == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return before == 0;
}

} // namespace

std::uint32_t allocateReceivePort(std::uint32_t& port) {
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket >= 0) {
        port = static_cast<std::uint32_t>(socket);
        foreignMessages = 0;
    }
    return resultCode(socket);
}

std::uint32_t insertSendRight(std::uint32_t port) {
    const int on = 1;
    return resultCode(::setsockopt(descriptorOf(port), SOL_SOCKET, SO_PASSCRED, &on, sizeof on));
}

std::uint32_t registerPort(std::uint32_t port, const char* name) {
    const std::string_view text = name;
    sockaddr_un address{};
    // The byte before the name stays NUL: an address without a file (unix(7), abstract sockets).
    if (text.size() > sizeof address.sun_path - 1) {
        return ENAMETOOLONG;
    }
    address.sun_family = AF_UNIX;
    std::copy(text.begin(), text.end(), address.sun_path + 1);
    const std::size_t length = offsetof(sockaddr_un, sun_path) + 1 + text.size();
    return resultCode(::bind(descriptorOf(port), reinterpret_cast<const sockaddr*>(&address),
                             static_cast<socklen_t>(length)));
}

std::uint32_t receiveMessage(std::uint32_t port, EngineMessage& message) {
    Datagram datagram; // filled by the receipt
    for (;;) {
        iovec place{.iov_base = datagram.data(), .iov_len = datagram.size()};
        alignas(cmsghdr) ControlBuffer control{};
        msghdr header{};
        header.msg_iov = &place;
        header.msg_iovlen = 1;
        header.msg_control = control.data();
        header.msg_controllen = control.size();
        const ssize_t size = receiveDatagram(descriptorOf(port), header);
        if (size < 0) {
            return static_cast<std::uint32_t>(errno);
        }
        if (!maySend(senderOf(header))) {
            if (isFirstForeignMessage()) {
                return EACCES;
            }
            continue;
        }
        if ((header.msg_flags & MSG_TRUNC) != 0) {
            return EMSGSIZE;
        }
        message = messageOf(datagram, static_cast<std::size_t>(size));
        return 0;
    }
}

} // namespace orvane::platform
