#include "tests/platform/MessagePortFixture.h"

#include <mach/mach.h>
#include <servers/bootstrap.h>

namespace orvane::test {

/// The right to receive is the port; with it go the names of those who may send.
void closePort(std::uint32_t port) {
    EXPECT_EQ(mach_port_mod_refs(mach_task_self(), port, MACH_PORT_RIGHT_RECEIVE, -1), KERN_SUCCESS);
}

namespace {

using namespace platform;

/// What nobody asked for: a right to send to some port of the sender's.
struct GivingMessage {
    mach_msg_header_t header;
    mach_msg_body_t body;
    mach_msg_port_descriptor_t gift;
};

class MessagePortRightsTest : public MessagePortTest {
protected:
    void SetUp() override {
        MessagePortTest::SetUp();
        ASSERT_EQ(allocateReceivePort(gift_), 0U);
        message_.header.msgh_size = sizeof(mach_msg_header_t);
        ASSERT_EQ(bootstrap_look_up(bootstrap_port, name_.c_str(), &message_.header.msgh_remote_port),
                  KERN_SUCCESS);
    }

    void TearDown() override {
        if (gift_ != 0) {
            closePort(gift_);
        }
        MessagePortTest::TearDown();
    }

    void send() {
        EXPECT_EQ(mach_msg(&message_.header, MACH_SEND_MSG, message_.header.msgh_size, 0, MACH_PORT_NULL,
                           MACH_MSG_TIMEOUT_NONE, MACH_PORT_NULL),
                  MACH_MSG_SUCCESS);
    }

    /// This process is sender and receiver, so a right that was kept shows at the gift's own name.
    mach_port_urefs_t keptRights() const {
        mach_port_urefs_t count = 0;
        EXPECT_EQ(mach_port_get_refs(mach_task_self(), gift_, MACH_PORT_RIGHT_SEND, &count), KERN_SUCCESS);
        return count;
    }

    std::uint32_t gift_ = 0;
    GivingMessage message_{};
};

TEST_F(MessagePortRightsTest, RightsThatComeAlongAreNotKept) {
    message_.header.msgh_bits = MACH_MSGH_BITS(MACH_MSG_TYPE_MOVE_SEND, 0) | MACH_MSGH_BITS_COMPLEX;
    message_.header.msgh_size = sizeof message_;
    message_.body.msgh_descriptor_count = 1;
    message_.gift.name = gift_;
    message_.gift.disposition = MACH_MSG_TYPE_MAKE_SEND;
    message_.gift.type = MACH_MSG_PORT_DESCRIPTOR;
    send();
    receive();
    EXPECT_EQ(keptRights(), 0U);
}

TEST_F(MessagePortRightsTest, TheRightToReplyIsNotKept) {
    message_.header.msgh_bits = MACH_MSGH_BITS(MACH_MSG_TYPE_MOVE_SEND, MACH_MSG_TYPE_MAKE_SEND);
    message_.header.msgh_local_port = gift_;
    send();
    receive();
    EXPECT_EQ(keptRights(), 0U);
}

} // namespace

} // namespace orvane::test
