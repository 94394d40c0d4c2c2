#include "tests/support/PlainListener.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace orvane::test {

namespace {

/// Child processes get no descriptor of the tests.
int keptFromChildren(int descriptor) {
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return descriptor;
}

} // namespace

ReservedPort::ReservedPort() : socket_(keptFromChildren(::socket(AF_INET, SOCK_STREAM, 0))) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, generic, length) != 0 || ::getsockname(socket_, generic, &length) != 0) {
        throw std::runtime_error("no port on loopback");
    }
    port_ = ntohs(address.sin_port);
}

ReservedPort::~ReservedPort() { ::close(socket_); }

PlainListener::PlainListener() {
    if (::listen(socket(), SOMAXCONN) != 0 || ::pipe(stopPipe_.data()) != 0) {
        throw std::runtime_error("no listening on loopback");
    }
    keptFromChildren(stopPipe_[0]);
    keptFromChildren(stopPipe_[1]);
}

PlainListener::~PlainListener() {
    ::close(stopPipe_[0]);
    ::close(stopPipe_[1]);
}

std::optional<int> PlainListener::accept() const {
    std::array<pollfd, 2> events{pollfd{.fd = socket(), .events = POLLIN, .revents = 0},
                                 pollfd{.fd = stopPipe_[0], .events = POLLIN, .revents = 0}};
    while (events[0].revents == 0 && events[1].revents == 0) {
        ::poll(events.data(), events.size(), -1);
    }
    if (events[1].revents != 0) {
        return std::nullopt;
    }
    const int client = ::accept(socket(), nullptr, nullptr);
    return client < 0 ? std::nullopt : std::optional(keptFromChildren(client));
}

void PlainListener::stop() const {
    const char anything = 0;
    if (::write(stopPipe_[1], &anything, 1) != 1) {
        throw std::runtime_error("the listener cannot be told to stop");
    }
}

} // namespace orvane::test
