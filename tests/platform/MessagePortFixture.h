#pragma once

#include "platform/MessagePort.h"
#include "tests/support/Sender.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

/// A name that no other service has or had. Any thread.
std::string newServiceName();

/// Gives a port back, which the product never does. Each platform in its own way.
void closePort(std::uint32_t port);

/// A registered port, and somebody who sends to it.
class MessagePortTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Waits for nothing after a failure: what could not be sent will not come.
    platform::EngineMessage receive() const;

    const std::string name_ = newServiceName();
    std::uint32_t port_ = 0;
    const Sender sender_{name_};
};

} // namespace orvane::test
