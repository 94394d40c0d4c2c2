#include "tests/platform/MessagePortFixture.h"

#include "platform/Bytes.h"
#include "tests/support/Gate.h"
#include "tests/support/OpenDescriptors.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvane::test {

/// A port is a descriptor here.
void closePort(std::uint32_t port) { ::close(static_cast<int>(port)); }

namespace {

using namespace platform;

/// Sends from a process of another user. For root only.
void sendAs(unsigned user, const Sender& sender, std::string_view message) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isOther = ::syscall(SYS_setresuid, user, user, user) == 0;
        sender.send(message);
        ::_exit(isOther && !testing::Test::HasFailure() ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

/// Gives the receiver `count` open descriptors along.
void sendWithDescriptors(const std::string& name, std::string message, std::size_t count) {
    const std::vector<int> descriptors(count, STDIN_FILENO);
    const std::size_t size = descriptors.size() * sizeof(int);
    Bytes control(CMSG_SPACE(size));
    auto* const gift = reinterpret_cast<cmsghdr*>(control.data());
    gift->cmsg_level = SOL_SOCKET;
    gift->cmsg_type = SCM_RIGHTS;
    gift->cmsg_len = CMSG_LEN(size);
    std::memcpy(CMSG_DATA(gift), descriptors.data(), size);

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), address.sun_path + 1);
    iovec place{.iov_base = message.data(), .iov_len = message.size()};
    msghdr header{};
    header.msg_name = &address;
    header.msg_namelen = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    header.msg_iov = &place;
    header.msg_iovlen = 1;
    header.msg_control = control.data();
    header.msg_controllen = control.size();

    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::sendmsg(socket, &header, 0), static_cast<ssize_t>(message.size()));
    ::close(socket);
}

TEST_F(MessagePortTest, AnswersAreErrnoValues) {
    constexpr std::uint32_t kNoPort = 1'000'000;
    EngineMessage message;
    EXPECT_EQ(insertSendRight(kNoPort), std::uint32_t{EBADF});
    EXPECT_EQ(registerPort(kNoPort, "orvane.test.none"), std::uint32_t{EBADF});
    EXPECT_EQ(receiveMessage(kNoPort, message), std::uint32_t{EBADF});

    std::uint32_t other = 0;
    EXPECT_EQ(allocateReceivePort(other), 0U);
    EXPECT_EQ(registerPort(other, name_.c_str()), std::uint32_t{EADDRINUSE});
    closePort(other);

    sender_.send(std::string(sizeof(std::int32_t) + kMessageTextSize + 1, 'x'));
    EXPECT_EQ(receiveMessage(port_, message), std::uint32_t{EMSGSIZE});
}

TEST_F(MessagePortTest, AStrangersMessageIsRefusedAndTheNextOneArrives) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can send as somebody else";
    }
    constexpr unsigned kNobody = 65534;
    sendAs(kNobody, sender_, std::string("\x03\0\0\0stranger", 12));
    sender_.send(std::string("\x01\0\0\0friend", 10));
    EngineMessage message;
    EXPECT_EQ(receiveMessage(port_, message), std::uint32_t{EACCES});
    EXPECT_STREQ(receive().text, "friend");
}

TEST_F(MessagePortTest, OfOtherUsersMessagesOnlyTheFirstIsReported) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can send as somebody else";
    }
    constexpr unsigned kNobody = 65534;
    const std::string message("\x03\0\0\0stranger", 12);
    sendAs(kNobody, sender_, message);
    EngineMessage received;
    EXPECT_EQ(receiveMessage(port_, received), std::uint32_t{EACCES});
    for (int count = 0; count < 3; ++count) {
        sendAs(kNobody, sender_, message);
        sendAs(kNobody - 1, sender_, std::string(sizeof(std::int32_t) + kMessageTextSize + 1, 'x'));
        sender_.send(std::string("\x01\0\0\0friend", 10));
        EXPECT_STREQ(receive().text, "friend");
    }
}

TEST_F(MessagePortTest, RootMaySendToAnybody) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can receive as somebody else";
    }
    constexpr unsigned kNobody = 65534;
    sender_.send(std::string("\x01\0\0\0from root", 13));
    EngineMessage message;
    EXPECT_EQ(::seteuid(kNobody), 0);
    const std::uint32_t code = receiveMessage(port_, message);
    EXPECT_EQ(::seteuid(0), 0);
    EXPECT_EQ(code, 0U);
    EXPECT_STREQ(message.text, "from root");
}

TEST_F(MessagePortTest, DescriptorsThatComeAlongAreNotKept) {
    const std::size_t before = openDescriptors();
    for (int count = 0; count < 5; ++count) {
        sendWithDescriptors(name_, std::string("\x01\0\0\0gift", 8), 20);
        EXPECT_STREQ(receive().text, "gift");
    }
    EXPECT_LE(openDescriptors(), before);
}

TEST_F(MessagePortTest, ANameIsFreeAsSoonAsItsPortIsClosed) {
    const std::string name = newServiceName();
    for (int round = 0; round < 100; ++round) {
        std::uint32_t port = 0;
        EXPECT_EQ(allocateReceivePort(port), 0U);
        EXPECT_EQ(registerPort(port, name.c_str()), 0U);
        closePort(port);
    }
}

TEST_F(MessagePortTest, ANameThatIsTooLongForASocketIsRefused) {
    std::uint32_t other = 0;
    EXPECT_EQ(allocateReceivePort(other), 0U);
    EXPECT_EQ(registerPort(other, std::string(108, 'n').c_str()), std::uint32_t{ENAMETOOLONG});
    EXPECT_EQ(registerPort(other, (newServiceName() + std::string(80, 'n')).c_str()), 0U);
    closePort(other);
}

TEST_F(MessagePortTest, ThePortClosesWhenAnotherProgramTakesOver) {
    EXPECT_NE(::fcntl(static_cast<int>(port_), F_GETFD) & FD_CLOEXEC, 0);
}

std::atomic<int> signalsSeen = 0;

/// Whether the kernel has `thread` inside this system call (proc(5), /proc/pid/syscall).
bool isInside(long systemCall, int thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/syscall");
    std::string number;
    return file >> number && number == std::to_string(systemCall);
}

TEST_F(MessagePortTest, ASignalDoesNotEndTheWait) {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { ++signalsSeen; }; // without SA_RESTART
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);
    std::atomic<int> threadNumber = 0;
    EngineMessage message;
    std::uint32_t code = 1;
    std::thread receiver([&] {
        threadNumber = static_cast<int>(::syscall(SYS_gettid));
        code = receiveMessage(port_, message);
    });
    const auto limit = std::chrono::steady_clock::now() + kPatience;
    while (!isInside(SYS_recvmsg, threadNumber) && std::chrono::steady_clock::now() < limit) {
        std::this_thread::yield();
    }
    ::pthread_kill(receiver.native_handle(), SIGUSR1);
    while (signalsSeen == 0 && std::chrono::steady_clock::now() < limit) {
        std::this_thread::yield();
    }
    sender_.send(std::string("\x01\0\0\0still here", 14));
    receiver.join();
    EXPECT_EQ(::sigaction(SIGUSR1, &before, nullptr), 0);
    EXPECT_EQ(signalsSeen, 1);
    EXPECT_EQ(code, 0U);
    EXPECT_STREQ(message.text, "still here");
}

} // namespace

} // namespace orvane::test
