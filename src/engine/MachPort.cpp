#include "engine/MachPort.h"

#include "platform/MessagePort.h"
#include "platform/ProgrammingError.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace orvane {

std::string RandomString(std::int64_t length) {
    constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    if (length < 0) {
        programmingError("a random string cannot have a negative length");
    }
    std::string result;
    for (std::int64_t count = 0; count < length; ++count) {
        result += alphabet[arc4random_uniform(alphabet.size())];
    }
    return result;
}

} // namespace orvane

using namespace orvane;

std::int64_t initializeMachPort(const char* name) {
    std::uint32_t port = 0;
    if (const std::uint32_t result = platform::allocateReceivePort(port); result != 0) {
        std::printf("mach_port_allocate() failed with code 0x%x\n", result);
        return -1;
    }
    std::printf("mach_port_allocate() created port with name %d\n", static_cast<std::int32_t>(port));

    if (const std::uint32_t result = platform::insertSendRight(port); result != 0) {
        std::printf("mach_port_insert_right() failed with code 0x%x\n", result);
        return -2;
    }
    std::printf("mach_port_insert_right() inserted a send right\n");

    if (const std::uint32_t result = platform::registerPort(port, name); result != 0) {
        std::printf("bootstrap_register() failed with code 0x%x\n", result);
        return -3;
    }
    std::printf("bootstrap_register()'ed our port\n");
    return port;
}

std::int32_t waitMachPortMessage(std::int64_t port, std::int32_t* type, char* buffer, std::int32_t length) {
    constexpr auto textSize = static_cast<std::int32_t>(platform::kMessageTextSize);
    if (length < textSize) {
        std::printf("the receive buffer length if less than %d\n", textSize);
        return 1;
    }
    platform::EngineMessage message;
    if (const std::uint32_t result = platform::receiveMessage(static_cast<std::uint32_t>(port), message);
        result != 0) {
        std::printf("mach_msg() failed with code 0x%x\n", result);
        return 2;
    }
    std::strncpy(buffer, message.text, platform::kMessageTextSize);
    *type = message.type;
    return 0;
}
