#include "tests/platform/MessagePortFixture.h"

#include <cstring>
#include <string>

namespace orvane::test {

namespace {

using namespace platform;

std::string wholeText(const EngineMessage& message) { return {message.text, sizeof message.text}; }

std::string padded(std::string text) {
    text.resize(kMessageTextSize);
    return text;
}

TEST_F(MessagePortTest, ReceivesTypeAndText) {
    sender_.send(std::string("\x03\0\0\0", 4) + padded("Installation"));
    const EngineMessage message = receive();
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
        const EngineMessage message = receive();
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
    EngineMessage message;
    EXPECT_EQ(receiveMessage(port_, message), 0U);
    sender_.send(std::string("\x02\0\0\0y", 5));
    EXPECT_EQ(receiveMessage(port_, message), 0U);
    EXPECT_EQ(wholeText(message), padded("y"));
}

TEST_F(MessagePortTest, AMessageThatIsTooLongIsRefusedAndTheNextOneArrives) {
    sender_.send(std::string(sizeof(std::int32_t) + kMessageTextSize + 1, 'x'));
    sender_.send(std::string("\x01\0\0\0next", 8));
    EngineMessage message;
    EXPECT_NE(receiveMessage(port_, message), 0U);
    EXPECT_STREQ(receive().text, "next");
}

TEST_F(MessagePortTest, ANameBelongsToOnePort) {
    std::uint32_t other = 0;
    EXPECT_EQ(allocateReceivePort(other), 0U);
    EXPECT_EQ(insertSendRight(other), 0U);
    EXPECT_NE(registerPort(other, name_.c_str()), 0U);
    EXPECT_EQ(registerPort(other, newServiceName().c_str()), 0U);
    closePort(other);
}

TEST_F(MessagePortTest, WhatIsNoPortIsRefused) {
    constexpr std::uint32_t kNoPort = 1'000'000;
    EngineMessage message;
    EXPECT_NE(insertSendRight(kNoPort), 0U);
    EXPECT_NE(registerPort(kNoPort, newServiceName().c_str()), 0U);
    EXPECT_NE(receiveMessage(kNoPort, message), 0U);
}

} // namespace

} // namespace orvane::test
