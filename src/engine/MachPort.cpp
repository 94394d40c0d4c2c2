#include "engine/MachPort.h"

#include "platform/MessagePort.h"
#include "platform/ProgrammingError.h"
#include "platform/StandardOutput.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string>
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

namespace {

std::string hexadecimal(std::uint32_t code) {
    std::array<char, 8> digits{};
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), code, 16);
    return {digits.begin(), end};
}

} // namespace

} // namespace orvane

using namespace orvane;

std::int64_t initializeMachPort(const char* name) {
    std::uint32_t port = 0;
    if (const std::uint32_t result = platform::allocateReceivePort(port); result != 0) {
        platform::printLine("mach_port_allocate() failed with code 0x" + hexadecimal(result));
        return -1;
    }
    platform::printLine("mach_port_allocate() created port with name " +
                        std::to_string(static_cast<std::int32_t>(port)));

    if (const std::uint32_t result = platform::insertSendRight(port); result != 0) {
        platform::printLine("mach_port_insert_right() failed with code 0x" + hexadecimal(result));
        return -2;
    }
    platform::printLine("mach_port_insert_right() inserted a send right");

    if (const std::uint32_t result = platform::registerPort(port, name); result != 0) {
        platform::printLine("bootstrap_register() failed with code 0x" + hexadecimal(result));
        return -3;
    }
    platform::printLine("bootstrap_register()'ed our port");
    return port;
}

std::int32_t waitMachPortMessage(std::int64_t port, std::int32_t* type, char* buffer, std::int32_t length) {
    constexpr auto textSize = static_cast<std::int32_t>(platform::kMessageTextSize);
    if (length < textSize) {
        platform::printLine("the receive buffer length if less than " + std::to_string(textSize));
        return 1;
    }
    platform::EngineMessage message;
    if (const std::uint32_t result = platform::receiveMessage(static_cast<std::uint32_t>(port), message);
        result != 0) {
        platform::printLine("mach_msg() failed with code 0x" + hexadecimal(result));
        return 2;
    }
    std::strncpy(buffer, message.text, platform::kMessageTextSize);
    *type = message.type;
    return 0;
}
