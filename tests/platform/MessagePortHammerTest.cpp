#include "tests/platform/MessagePortFixture.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/Watchdog.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace orvane::test {

namespace {

using namespace platform;

class MessagePortHammerTest : public testing::Test {
protected:
    static std::uint32_t newPort(const std::string& name) {
        std::uint32_t port = 0;
        EXPECT_EQ(allocateReceivePort(port), 0U);
        EXPECT_EQ(insertSendRight(port), 0U);
        EXPECT_EQ(registerPort(port, name.c_str()), 0U);
        return port;
    }

    /// What a sender numbers its messages with: its own number as the type, a count as the text.
    static std::string numbered(std::int32_t sender, int count) {
        return rawMessage(sender, std::to_string(count));
    }

    const Watchdog watchdog_;
};

// A new name each time: launchd frees a name only when it learns of the port's end.
TEST_F(MessagePortHammerTest, PortsThatComeAndGoGiveTheirDescriptorsBack) {
    const std::size_t before = openDescriptors();
    for (int round = 0; round < 2000; ++round) {
        const std::string name = newServiceName();
        const std::uint32_t port = newPort(name);
        if (round % 3 == 0) {
            Sender(name).send(numbered(1, round)); // and is never received
        }
        closePort(port);
    }
    EXPECT_LE(openDescriptors(), before);
}

TEST_F(MessagePortHammerTest, SeveralPortsOnThreadsOfTheirOwnKeepTheirMessagesApart) {
    constexpr int kPorts = 4;
    std::vector<std::thread> threads;
    for (int number = 0; number < kPorts; ++number) {
        threads.emplace_back([number] {
            for (int round = 0; round < 200; ++round) {
                const std::string name = newServiceName();
                const std::uint32_t port = newPort(name);
                const Sender sender(name);
                sender.send(numbered(number, round));
                EngineMessage message;
                EXPECT_EQ(receiveMessage(port, message), 0U);
                EXPECT_EQ(message.type, number);
                EXPECT_EQ(message.text, std::to_string(round));
                closePort(port);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(MessagePortHammerTest, SendersThatComeAndGoAreAllHeardEachInItsOrder) {
    constexpr int kSenders = 4;
    constexpr int kMessages = 2000;
    const std::string name = newServiceName();
    const std::uint32_t port = newPort(name);
    std::vector<std::thread> senders;
    for (int number = 0; number < kSenders; ++number) {
        senders.emplace_back([number, &name] {
            for (int count = 0; count < kMessages; ++count) {
                Sender(name).send(numbered(number, count));
            }
        });
    }
    std::array<int, kSenders> next{};
    for (int received = 0; received < kSenders * kMessages; ++received) {
        EngineMessage message;
        ASSERT_EQ(receiveMessage(port, message), 0U);
        ASSERT_EQ(message.text, std::to_string(next.at(static_cast<std::size_t>(message.type))++));
    }
    for (std::thread& sender : senders) {
        sender.join();
    }
    closePort(port);
}

TEST_F(MessagePortHammerTest, GoodAndTooLongMessagesMixedAreToldApart) {
    constexpr int kRounds = 1000;
    const std::string name = newServiceName();
    const std::uint32_t port = newPort(name);
    std::thread sender([&name] {
        const std::string tooLong(sizeof(std::int32_t) + kMessageTextSize + 1, 'x');
        for (int round = 0; round < kRounds; ++round) {
            Sender(name).send(tooLong);
            Sender(name).send(numbered(1, round));
        }
    });
    for (int round = 0; round < kRounds; ++round) {
        EngineMessage message;
        EXPECT_NE(receiveMessage(port, message), 0U);
        EXPECT_EQ(receiveMessage(port, message), 0U);
        EXPECT_EQ(message.text, std::to_string(round));
    }
    sender.join();
    closePort(port);
}

} // namespace

} // namespace orvane::test
