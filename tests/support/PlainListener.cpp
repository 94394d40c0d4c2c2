#include "tests/support/PlainListener.h"

#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace orvane::test {

ReservedPort::ReservedPort() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
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
    if (::listen(socket(), SOMAXCONN) != 0) {
        throw std::runtime_error("no listening on loopback");
    }
}

} // namespace orvane::test
