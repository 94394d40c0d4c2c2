#include "engine/MachPort.h"

#include "platform/MessagePort.h"
#include "platform/StandardOutput.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/DeathTest.h"
#include "tests/support/Sender.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace orvane {
namespace {

using platform::kMessageTextSize;
using test::CaptureStandardOutput;
using test::rawMessage;
using test::Sender;

constexpr std::string_view kAlphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

TEST(RandomStringTest, ItHasTheLengthAskedFor) {
    EXPECT_EQ(RandomString(0), "");
    EXPECT_EQ(RandomString(1).size(), 1U);
    EXPECT_EQ(RandomString(10).size(), 10U);
}

TEST(RandomStringTest, ItConsistsOfLettersAndDigitsAndUsesThemAll) {
    // That one of the 62 is missing from so many by chance happens once in some 10^68 runs.
    const std::string drawn = RandomString(10000);
    const std::set<char> used(drawn.begin(), drawn.end());
    EXPECT_EQ(used, std::set<char>(kAlphabet.begin(), kAlphabet.end()));
}

TEST(RandomStringTest, TwoOfThemDiffer) { EXPECT_NE(RandomString(10), RandomString(10)); }

using RandomStringDeathTest = test::DeathTest;

TEST_F(RandomStringDeathTest, ANegativeLengthIsAProgrammingError) {
    EXPECT_DEATH(RandomString(-1), "programming error: a random string cannot have a negative length");
}

/// A registered service. Its port stays open, as that of a run does.
struct Service {
    std::string name = "kestrix.orvane.bootstrap." + RandomString(10);
    std::string printed;
    std::int64_t port = -1;

    Service() {
        CaptureStandardOutput output;
        port = initializeMachPort(name.c_str());
        printed = output.finish();
    }
};

TEST(InitializeMachPortTest, ARegisteredServiceHasAPortAndPrintsWhatWasDone) {
    const Service service;
    EXPECT_GE(service.port, 0);
    EXPECT_EQ(service.name.size(), 35U);
    EXPECT_EQ(service.printed,
              "mach_port_allocate() created port with name " + std::to_string(service.port) +
                  "\nmach_port_insert_right() inserted a send right\nbootstrap_register()'ed our port\n");
}

TEST(InitializeMachPortTest, ANameThatIsTakenAnswersMinus3) {
    const Service service;
    CaptureStandardOutput output;
    EXPECT_EQ(initializeMachPort(service.name.c_str()), -3);
    const std::string printed = output.finish();
    EXPECT_TRUE(printed.starts_with("mach_port_allocate() created port with name ")) << printed;
    EXPECT_TRUE(printed.ends_with("\nmach_port_insert_right() inserted a send right\n"
                                  "bootstrap_register() failed with code 0x62\n"))
        << printed;
}

TEST(InitializeMachPortTest, APortThatCannotBeMadeAnswersMinus1) {
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    CaptureStandardOutput output;
    // The undefined behaviour sanitizer needs descriptors the first time that a line is printed.
    platform::printLine("before the limit");
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const std::int64_t result = initializeMachPort("kestrix.orvane.bootstrap.never-made");
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(output.finish(), "before the limit\nmach_port_allocate() failed with code 0x18\n");
}

class WaitMachPortMessageTest : public testing::Test {
protected:
    std::int32_t wait(std::int32_t length = kMessageTextSize) {
        CaptureStandardOutput output;
        const std::int32_t result = waitMachPortMessage(service.port, &type, buffer.data(), length);
        printed = output.finish();
        return result;
    }

    void send(std::int32_t messageType, const std::string& text) const {
        Sender(service.name).send(rawMessage(messageType, text));
    }

    static std::string filledUp(std::string text) {
        text.resize(kMessageTextSize);
        return text;
    }

    const Service service;
    std::int32_t type = 4711;
    std::string buffer = std::string(kMessageTextSize, 'x');
    std::string printed;
};

TEST_F(WaitMachPortMessageTest, AMessageBringsItsTypeAndItsText) {
    send(1, filledUp("Téléchargement"));
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(type, 1);
    EXPECT_EQ(buffer, filledUp("Téléchargement"));
    EXPECT_EQ(printed, "");
}

TEST_F(WaitMachPortMessageTest, TheTypeIsASigned32BitNumber) {
    for (const std::int32_t sent : {0, 6, -1, 2147483647, -2147483647 - 1, 0x01020304}) {
        send(sent, filledUp("x"));
        EXPECT_EQ(wait(), 0);
        EXPECT_EQ(type, sent);
    }
}

TEST_F(WaitMachPortMessageTest, MessagesArriveInTheOrderOfTheirSending) {
    send(0, filledUp("1"));
    send(0, filledUp("2"));
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(buffer, filledUp("1"));
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(buffer, filledUp("2"));
}

TEST_F(WaitMachPortMessageTest, ItWaitsUntilAMessageArrives) {
    std::int32_t result = -1;
    std::thread loop([this, &result] {
        result = waitMachPortMessage(service.port, &type, buffer.data(), kMessageTextSize);
    });
    send(4, filledUp("late"));
    loop.join();
    EXPECT_EQ(result, 0);
    EXPECT_EQ(buffer, filledUp("late"));
}

TEST_F(WaitMachPortMessageTest, WhatFollowsTheFirstNulReadsAsNuls) {
    send(1, filledUp(std::string("text\0remains of an older one", 28)));
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(buffer, filledUp("text"));
}

TEST_F(WaitMachPortMessageTest, ATextThatFillsTheFieldIsNotTerminated) {
    const std::string full(kMessageTextSize, 'f');
    buffer = std::string(kMessageTextSize + 16, 'x');
    send(1, full);
    EXPECT_EQ(wait(static_cast<std::int32_t>(buffer.size())), 0);
    EXPECT_EQ(buffer, full + std::string(16, 'x')) << "only the field's own 4096 bytes are written";
}

TEST_F(WaitMachPortMessageTest, AShortMessageIsAcceptedAndTheMissingTextReadsAsNuls) {
    send(3, "0");
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(type, 3);
    EXPECT_EQ(buffer, filledUp("0"));
}

TEST_F(WaitMachPortMessageTest, ABufferOf4095BytesIsRefusedBeforeAnythingIsReceived) {
    send(1, filledUp("still there"));
    EXPECT_EQ(wait(4095), 1);
    EXPECT_EQ(printed, "the receive buffer length if less than 4096\n");
    EXPECT_EQ(type, 4711);
    EXPECT_EQ(buffer, std::string(kMessageTextSize, 'x'));
    EXPECT_EQ(wait(4096), 0);
    EXPECT_EQ(buffer, filledUp("still there"));
}

TEST_F(WaitMachPortMessageTest, ABufferOfNegativeLengthIsRefusedToo) {
    EXPECT_EQ(wait(-1), 1);
    EXPECT_EQ(printed, "the receive buffer length if less than 4096\n");
}

TEST_F(WaitMachPortMessageTest, ATooLongMessageFailsAndIsDiscarded) {
    send(1, std::string(kMessageTextSize + 1, 'l'));
    send(2, filledUp("next"));
    EXPECT_EQ(wait(), 2);
    EXPECT_EQ(printed, "mach_msg() failed with code 0x5a\n");
    EXPECT_EQ(type, 4711);
    EXPECT_EQ(buffer, std::string(kMessageTextSize, 'x'));
    EXPECT_EQ(wait(), 0);
    EXPECT_EQ(type, 2);
    EXPECT_EQ(buffer, filledUp("next"));
}

TEST_F(WaitMachPortMessageTest, APortThatIsNoneFails) {
    CaptureStandardOutput output;
    EXPECT_EQ(waitMachPortMessage(1 << 20, &type, buffer.data(), kMessageTextSize), 2);
    EXPECT_EQ(output.finish(), "mach_msg() failed with code 0x9\n");
    EXPECT_EQ(type, 4711);
    EXPECT_EQ(buffer, std::string(kMessageTextSize, 'x'));
}

} // namespace
} // namespace orvane
