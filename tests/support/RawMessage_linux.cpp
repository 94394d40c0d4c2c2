#include "tests/support/RawMessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvane::test {

std::string rawMessage(std::int32_t type, const std::string& text) {
    std::string message;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        message += static_cast<char>(static_cast<std::uint32_t>(type) >> shift & 0xFFU);
    }
    return message + text;
}

void sendRaw(const std::string& serviceName, const std::string& message) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(serviceName.size(), sizeof address.sun_path);
    std::copy(serviceName.begin(), serviceName.end(), address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + serviceName.size());

    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(descriptor, 0);
    const ssize_t sent = sendto(descriptor, message.data(), message.size(), 0,
                                reinterpret_cast<const sockaddr*>(&address), length);
    EXPECT_EQ(sent, static_cast<ssize_t>(message.size())) << std::strerror(errno);
    close(descriptor);
}

} // namespace orvane::test
