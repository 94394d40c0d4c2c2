#include "platform/MessagePort.h"

#include "tests/platform/Sender.h"
#include "tests/support/Gate.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace orvane::test {

namespace {

using namespace platform;

std::string newName() {
    static int count = 0;
    return "orvane.test." + std::to_string(::getpid()) + "." + std::to_string(++count);
}

class MessagePortTest : public testing::Test {
protected:
    MessagePortTest() {
        EXPECT_EQ(allocateReceivePort(port_), 0U);
        EXPECT_EQ(insertSendRight(port_), 0U);
        EXPECT_EQ(registerPort(port_, name_.c_str()), 0U);
    }
    ~MessagePortTest() override { ::close(static_cast<int>(port_)); }

    PortMessage receive() const {
        PortMessage message;
        EXPECT_EQ(receiveMessage(port_, message), 0U);
        return message;
    }

    const std::string name_ = newName();
    std::uint32_t port_ = 0;
    Sender sender_{name_};
};

std::string wholeText(const PortMessage& message) { return {message.text, sizeof message.text}; }

std::string padded(std::string text) {
    text.resize(kMessageTextSize);
    return text;
}

TEST_F(MessagePortTest, ReceivesTypeAndText) {
    sender_.send(std::string("\x03\0\0\0", 4) + padded("Installation"));
    const PortMessage message = receive();
    EXPECT_EQ(message.type, 3);
    EXPECT_EQ(wholeText(message), padded("Installation"));
}

TEST_F(MessagePortTest, ReceivesMessagesInTheirOrder) {
    sender_.send(std::string("\x01\0\0\0one", 7));
    sender_.send(std::string("\x02\0\0\0two", 7));
    EXPECT_STREQ(receive().text, "one");
    EXPECT_STREQ(receive().text, "two");
}

TEST_F(MessagePortTest, TheTypeIsSignedAndLittleEndian) {
    sender_.send("\x78\x56\x34\x12");
    EXPECT_EQ(receive().type, 0x12345678);
    sender_.send("\xff\xff\xff\xff");
    EXPECT_EQ(receive().type, -1);
    sender_.send(std::string("\0\0\0\x80", 4));
    EXPECT_EQ(receive().type, INT32_MIN);
}

TEST_F(MessagePortTest, ATextThatFillsItsFieldHasNoTerminator) {
    const std::string text(kMessageTextSize, 'x');
    sender_.send(std::string("\x01\0\0\0", 4) + text);
    EXPECT_EQ(wholeText(receive()), text);
}

TEST_F(MessagePortTest, WhatAShortMessageLeavesOutReadsAsZero) {
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{4}, std::size_t{9}}) {
        const std::string whole("\x81\x82\x83\x04texts", 9);
        sender_.send(whole.substr(0, length));
        const PortMessage message = receive();
        std::string expected = whole.substr(0, length);
        expected.resize(sizeof(std::int32_t) + kMessageTextSize);
        std::int32_t type = 0;
        std::memcpy(&type, expected.data(), sizeof type); // this machine is little-endian
        EXPECT_EQ(message.type, type) << length;
        EXPECT_EQ(wholeText(message), expected.substr(sizeof type)) << length;
    }
}

TEST_F(MessagePortTest, NothingOfAnEarlierMessageIsLeft) {
    sender_.send(std::string("\x01\0\0\0", 4) + std::string(kMessageTextSize, 'x'));
    PortMessage message;
    EXPECT_EQ(receiveMessage(port_, message), 0U);
    sender_.send(std::string("\x02\0\0\0y", 5));
    EXPECT_EQ(receiveMessage(port_, message), 0U);
    EXPECT_EQ(wholeText(message), padded("y"));
}

TEST_F(MessagePortTest, AMessageThatIsTooLongIsRefusedAndTheNextOneArrives) {
    sender_.send(std::string(sizeof(std::int32_t) + kMessageTextSize + 1, 'x'));
    sender_.send(std::string("\x01\0\0\0next", 8));
    PortMessage message;
    EXPECT_EQ(receiveMessage(port_, message), std::uint32_t{EMSGSIZE});
    EXPECT_STREQ(receive().text, "next");
}

TEST_F(MessagePortTest, AStrangersMessageIsRefusedAndTheNextOneArrives) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can send as somebody else";
    }
    constexpr unsigned kNobody = 65534;
    sender_.sendAs(kNobody, std::string("\x03\0\0\0stranger", 12));
    sender_.send(std::string("\x01\0\0\0friend", 10));
    PortMessage message;
    EXPECT_EQ(receiveMessage(port_, message), std::uint32_t{EACCES});
    EXPECT_STREQ(receive().text, "friend");
}

TEST_F(MessagePortTest, RootMaySendToAnybody) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can receive as somebody else";
    }
    constexpr unsigned kNobody = 65534;
    sender_.send(std::string("\x01\0\0\0from root", 13));
    PortMessage message;
    EXPECT_EQ(::seteuid(kNobody), 0);
    const std::uint32_t code = receiveMessage(port_, message);
    EXPECT_EQ(::seteuid(0), 0);
    EXPECT_EQ(code, 0U);
    EXPECT_STREQ(message.text, "from root");
}

std::size_t openDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

TEST_F(MessagePortTest, DescriptorsThatComeAlongAreNotKept) {
    const std::size_t before = openDescriptors();
    for (int count = 0; count < 5; ++count) {
        sender_.sendWithDescriptors(std::string("\x01\0\0\0gift", 8), 20);
        EXPECT_STREQ(receive().text, "gift");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(MessagePortTest, ANameBelongsToOnePort) {
    std::uint32_t other = 0;
    EXPECT_EQ(allocateReceivePort(other), 0U);
    EXPECT_EQ(registerPort(other, name_.c_str()), std::uint32_t{EADDRINUSE});
    EXPECT_EQ(registerPort(other, newName().c_str()), 0U);
    ::close(static_cast<int>(other));
}

TEST_F(MessagePortTest, ANameThatIsTooLongForASocketIsRefused) {
    std::uint32_t other = 0;
    EXPECT_EQ(allocateReceivePort(other), 0U);
    EXPECT_EQ(registerPort(other, std::string(108, 'n').c_str()), std::uint32_t{ENAMETOOLONG});
    EXPECT_EQ(registerPort(other, (newName() + std::string(80, 'n')).c_str()), 0U);
    ::close(static_cast<int>(other));
}

TEST_F(MessagePortTest, WhatIsNoPortIsRefused) {
    constexpr std::uint32_t kNoPort = 1'000'000;
    PortMessage message;
    EXPECT_EQ(insertSendRight(kNoPort), std::uint32_t{EBADF});
    EXPECT_EQ(registerPort(kNoPort, "orvane.test.none"), std::uint32_t{EBADF});
    EXPECT_EQ(receiveMessage(kNoPort, message), std::uint32_t{EBADF});
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
    PortMessage message;
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
