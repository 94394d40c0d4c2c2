#include "tests/platform/MessagePortFixture.h"

#include <atomic>
#include <unistd.h>

namespace orvane::test {

using namespace platform;

std::string newServiceName() {
    static std::atomic<int> count = 0;
    return "orvane.test." + std::to_string(::getpid()) + "." + std::to_string(++count);
}

void MessagePortTest::SetUp() {
    ASSERT_EQ(allocateReceivePort(port_), 0U);
    ASSERT_EQ(insertSendRight(port_), 0U);
    ASSERT_EQ(registerPort(port_, name_.c_str()), 0U);
}

void MessagePortTest::TearDown() {
    if (port_ != 0) {
        closePort(port_);
    }
}

EngineMessage MessagePortTest::receive() const {
    EngineMessage message;
    if (HasFailure()) {
        return message;
    }
    EXPECT_EQ(receiveMessage(port_, message), 0U);
    return message;
}

} // namespace orvane::test
