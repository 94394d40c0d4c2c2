#include "tests/support/Sender.h"

#include <gtest/gtest.h>
#include <mach/mach.h>
#include <servers/bootstrap.h>

#include <cstring>
#include <vector>

namespace orvane::test {

void Sender::send(std::string_view message) const {
    mach_port_t service = MACH_PORT_NULL;
    ASSERT_EQ(bootstrap_look_up(bootstrap_port, serviceName_.c_str(), &service), KERN_SUCCESS);

    // The kernel takes whole words only.
    using Word = std::uint32_t;
    const std::size_t size = sizeof(mach_msg_header_t) + message.size();
    std::vector<Word> words((size + sizeof(Word) - 1) / sizeof(Word));
    auto* const header = reinterpret_cast<mach_msg_header_t*>(words.data());
    header->msgh_bits = MACH_MSGH_BITS(MACH_MSG_TYPE_MOVE_SEND, 0);
    header->msgh_size = static_cast<mach_msg_size_t>(words.size() * sizeof(Word));
    header->msgh_remote_port = service;
    if (!message.empty()) {
        std::memcpy(header + 1, message.data(), message.size());
    }
    EXPECT_EQ(mach_msg(header, MACH_SEND_MSG, header->msgh_size, 0, MACH_PORT_NULL, MACH_MSG_TIMEOUT_NONE,
                       MACH_PORT_NULL),
              MACH_MSG_SUCCESS);
}

} // namespace orvane::test
