#include "tests/platform/Sender.h"

#include "platform/Bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvane::test {

namespace {

bool transmit(int socket, const std::string& endpoint, std::string_view datagram, ByteView control) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(endpoint.begin(), endpoint.end(), address.sun_path + 1);
    iovec place{.iov_base = const_cast<char*>(datagram.data()), .iov_len = datagram.size()};
    msghdr header{};
    header.msg_name = &address;
    header.msg_namelen = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + endpoint.size());
    header.msg_iov = &place;
    header.msg_iovlen = 1;
    header.msg_control = const_cast<std::byte*>(control.data());
    header.msg_controllen = control.size();
    return ::sendmsg(socket, &header, 0) == static_cast<ssize_t>(datagram.size());
}

} // namespace

Sender::Sender(std::string endpoint)
    : endpoint_(std::move(endpoint)), socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

Sender::~Sender() { ::close(socket_); }

void Sender::send(std::string_view datagram) const {
    EXPECT_TRUE(transmit(socket_, endpoint_, datagram, {}));
}

void Sender::sendAs(unsigned user, std::string_view datagram) const {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isOther = ::syscall(SYS_setresuid, user, user, user) == 0;
        ::_exit(isOther && transmit(socket_, endpoint_, datagram, {}) ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

void Sender::sendWithDescriptors(std::string_view datagram, int count) const {
    const std::vector<int> descriptors(static_cast<std::size_t>(count), STDIN_FILENO);
    const std::size_t size = descriptors.size() * sizeof(int);
    Bytes control(CMSG_SPACE(size));
    auto* const header = reinterpret_cast<cmsghdr*>(control.data());
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(size);
    std::memcpy(CMSG_DATA(header), descriptors.data(), size);
    EXPECT_TRUE(transmit(socket_, endpoint_, datagram, control));
}

} // namespace orvane::test
