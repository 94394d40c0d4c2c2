#include "tests/demo/ServiceEnd.h"

#include "platform/ProcessInfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <unistd.h>

namespace orvane::test {

ServiceEnd::ServiceEnd() {
    static int count = 0;
    name_ = "orvane.test." + std::to_string(platform::processIdentifier()) + "." + std::to_string(++count);
    EXPECT_EQ(platform::allocateReceivePort(port_), 0U);
    EXPECT_EQ(platform::insertSendRight(port_), 0U);
    EXPECT_EQ(platform::registerPort(port_, name_.c_str()), 0U);
}

// A port is a descriptor here; nothing of the product ever gives one back.
ServiceEnd::~ServiceEnd() { close(static_cast<int>(port_)); }

std::pair<std::int32_t, std::string> ServiceEnd::receive() {
    EXPECT_EQ(platform::receiveMessage(port_, message_), 0U);
    return {message_.type, std::string(message_.text, strnlen(message_.text, sizeof message_.text))};
}

} // namespace orvane::test
