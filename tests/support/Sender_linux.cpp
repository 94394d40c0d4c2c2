#include "tests/support/Sender.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvane::test {

void Sender::send(std::string_view message) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(serviceName_.size(), sizeof address.sun_path);
    std::copy(serviceName_.begin(), serviceName_.end(), address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + serviceName_.size());

    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(socket, 0);
    const ssize_t sent = ::sendto(socket, message.data(), message.size(), 0,
                                  reinterpret_cast<const sockaddr*>(&address), length);
    EXPECT_EQ(sent, static_cast<ssize_t>(message.size())) << std::strerror(errno);
    ::close(socket);
}

} // namespace orvane::test
