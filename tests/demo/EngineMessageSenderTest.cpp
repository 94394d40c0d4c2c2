#include "sender/EngineMessageSender.h"
#include "tests/demo/ServiceEnd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

namespace orvane::test {
namespace {

using Message = std::pair<std::int32_t, std::string>;

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t index = 0; index < count; ++index) {
        result += text;
    }
    return result;
}

TEST(EngineMessageSenderTest, DeliversTypeAndText) {
    ServiceEnd service;
    EngineMessageSender sender(service.name());
    sender.send(EngineMessageType::step, "Téléchargement");
    EXPECT_EQ(service.receive(), Message(1, "Téléchargement"));
}

TEST(EngineMessageSenderTest, DeliversATypeThatHasNoName) {
    ServiceEnd service;
    EngineMessageSender(service.name()).send(static_cast<EngineMessageType>(-2), "x");
    EXPECT_EQ(service.receive(), Message(-2, "x"));
}

TEST(EngineMessageSenderTest, FillsTheTextFieldWithNul) {
    ServiceEnd service;
    EngineMessageSender(service.name()).send(EngineMessageType::error, "abc");
    service.receive();
    const char* begin = service.message().text;
    EXPECT_TRUE(
        std::all_of(begin + 3, begin + platform::kMessageTextSize, [](char byte) { return byte == 0; }));
}

TEST(EngineMessageSenderTest, DeliversTheLongestTextWhole) {
    ServiceEnd service;
    const std::string longest(kEngineMessageTextLimit, 'a');
    EngineMessageSender(service.name()).send(EngineMessageType::step, longest);
    EXPECT_EQ(service.receive(), Message(1, longest));
}

TEST(EngineMessageSenderTest, CutsALongerTextBeforeTheLimit) {
    ServiceEnd service;
    EngineMessageSender(service.name()).send(EngineMessageType::step, std::string(5000, 'a'));
    EXPECT_EQ(service.receive(), Message(1, std::string(kEngineMessageTextLimit, 'a')));
}

TEST(EngineMessageSenderTest, CutsBetweenCharactersOfEveryLength) {
    for (const std::string& character : {std::string("é"), std::string("€"), std::string("😀")}) {
        for (std::size_t shift = 0; shift < character.size(); ++shift) {
            ServiceEnd service;
            const std::string start(shift, 'a');
            const std::size_t whole = (kEngineMessageTextLimit - shift) / character.size();
            EngineMessageSender(service.name())
                .send(EngineMessageType::step, start + repeated(character, 4096));
            EXPECT_EQ(service.receive(), Message(1, start + repeated(character, whole)))
                << character << shift;
        }
    }
}

TEST(EngineMessageSenderTest, StopsAtTheFirstNul) {
    ServiceEnd service;
    EngineMessageSender(service.name()).send(EngineMessageType::step, std::string_view("ab\0cd", 5));
    service.receive();
    EXPECT_EQ(std::string(service.message().text, 5), std::string("ab\0\0\0", 5));
}

TEST(EngineMessageSenderTest, KeepsTheOrderOfMessages) {
    ServiceEnd service;
    EngineMessageSender sender(service.name());
    for (int position = 0; position < 5; ++position) {
        sender.send(EngineMessageType::progress, std::to_string(position));
    }
    for (int position = 0; position < 5; ++position) {
        EXPECT_EQ(service.receive(), Message(0, std::to_string(position)));
    }
}

std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const EngineMessageError& error) {
        return error.what();
    }
    return "no failure";
}

TEST(EngineMessageSenderTest, SaysWhichServiceIsMissing) {
    EXPECT_EQ(failureOf([] { EngineMessageSender("orvane.test.nobody"); }),
              "cannot connect to orvane.test.nobody: Connection refused");
}

TEST(EngineMessageSenderTest, RefusesNamesThatNoServiceCanHave) {
    EXPECT_EQ(failureOf([] { EngineMessageSender(""); }),
              "cannot connect to : a service name has 1 to 107 bytes");
    EXPECT_EQ(failureOf([] { EngineMessageSender(std::string(300, 'a')); }),
              "cannot connect to " + std::string(107, 'a') + ": a service name has 1 to 107 bytes");
    EXPECT_EQ(failureOf([] { EngineMessageSender(std::string(107, 'a')); }),
              "cannot connect to " + std::string(107, 'a') + ": Connection refused");
}

TEST(EngineMessageSenderTest, SaysThatTheReceiverIsGone) {
    auto service = std::make_unique<ServiceEnd>();
    const std::string name = service->name();
    EngineMessageSender sender(name);
    service.reset();
    EXPECT_EQ(failureOf([&] { sender.send(EngineMessageType::step, "x"); }),
              "cannot send to " + name + ": Connection refused");
}

TEST(OrvaneSenderInCTest, DeliversUntilItIsClosed) {
    ServiceEnd service;
    orvane_sender* const sender = orvane_sender_open(service.name().c_str(), nullptr, 0);
    ASSERT_NE(sender, nullptr);
    EXPECT_EQ(orvane_sender_send(sender, ORVANE_CANCEL_BUTTON, "1", nullptr, 0), 0);
    orvane_sender_close(sender);
    EXPECT_EQ(service.receive(), Message(6, "1"));
    orvane_sender_close(nullptr);
}

TEST(OrvaneSenderInCTest, ReportsAFailureInTheRoomThatItsCallerHas) {
    std::array<char, ORVANE_SENDER_ERROR_SIZE> error{};
    EXPECT_EQ(orvane_sender_open("orvane.test.nobody", error.data(), error.size()), nullptr);
    EXPECT_STREQ(error.data(), "cannot connect to orvane.test.nobody: Connection refused");
    error.fill('x');
    EXPECT_EQ(orvane_sender_open("orvane.test.nobody", error.data(), 7), nullptr);
    EXPECT_EQ(std::string(error.data(), 8), std::string("cannot\0x", 8));
    EXPECT_EQ(orvane_sender_open("orvane.test.nobody", nullptr, 0), nullptr);
    EXPECT_EQ(orvane_sender_open("orvane.test.nobody", error.data(), 0), nullptr);
}

TEST(OrvaneSenderInCTest, SaysThatTheReceiverIsGone) {
    auto service = std::make_unique<ServiceEnd>();
    const std::string name = service->name();
    orvane_sender* const sender = orvane_sender_open(name.c_str(), nullptr, 0);
    ASSERT_NE(sender, nullptr);
    service.reset();
    std::array<char, ORVANE_SENDER_ERROR_SIZE> error{};
    EXPECT_EQ(orvane_sender_send(sender, ORVANE_STEP, "x", error.data(), error.size()), -1);
    EXPECT_EQ(std::string(error.data()), "cannot send to " + name + ": Connection refused");
    orvane_sender_close(sender);
}

} // namespace
} // namespace orvane::test
