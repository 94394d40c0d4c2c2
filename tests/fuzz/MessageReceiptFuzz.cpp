/// Any bytes as an engine message, sent to a real endpoint: the type and the text that arrive are those that
/// were sent, and a message that is too long takes nothing with it.

#include "engine/MachPort.h"
#include "platform/MessagePort.h"
#include "platform/Utf8.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/Sender.h"

#include <array>
#include <cstring>
#include <string>

namespace orvane::fuzz {
namespace {

using platform::kMessageTextSize;
using Buffer = std::array<char, kMessageTextSize>;

constexpr std::size_t kTypeSize = 4;
constexpr std::int32_t kFollowerType = 4711;

/// Registered once. What it prints for each message that it refuses is of no interest.
struct Service {
    std::string name = "kestrix.orvane.bootstrap." + RandomString(10);
    std::int64_t port = -1;

    Service() {
        expect(std::freopen("/dev/null", "w", stdout) != nullptr, "standard output can be diverted");
        port = initializeMachPort(name.c_str());
        expect(port >= 0, "the endpoint can be made");
    }
};

struct Received {
    std::int32_t result = -1;
    std::int32_t type = -1;
    Buffer text{};
};

Received receive(const Service& service) {
    Received received;
    received.text.fill('x');
    received.result =
        waitMachPortMessage(service.port, &received.type, received.text.data(), kMessageTextSize);
    return received;
}

std::int32_t typeOf(std::string_view message) {
    std::uint32_t type = 0;
    for (std::size_t index = 0; index < std::min(kTypeSize, message.size()); ++index) {
        type += static_cast<std::uint32_t>(static_cast<unsigned char>(message[index])) << (8 * index);
    }
    return static_cast<std::int32_t>(type);
}

/// The text as the run reads it, up to the first NUL; what a message leaves out is NUL.
std::string_view textOf(std::string_view message) {
    message.remove_prefix(std::min(kTypeSize, message.size()));
    return message.substr(0, message.find('\0'));
}

/// Reads code points and looks at their values, instead of at the ranges of single bytes.
bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        std::size_t length = 1;
        while (length < 5 && (first & (0x80U >> length)) != 0) {
            ++length;
        }
        if (first < 0x80) {
            text.remove_prefix(1);
            continue;
        }
        if (first < 0xC0 || length > 4 || text.size() < length) {
            return false;
        }
        std::uint32_t value = first & (0x7FU >> length);
        for (const char unit : text.substr(1, length - 1)) {
            if ((static_cast<unsigned char>(unit) & 0xC0U) != 0x80U) {
                return false;
            }
            value = value << 6U | (static_cast<unsigned char>(unit) & 0x3FU);
        }
        constexpr std::array<std::uint32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
        if (value < smallest[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

void checkFirst(const Received& received, std::string_view message) {
    if (message.size() > kTypeSize + kMessageTextSize) {
        expect(received.result == 2, "a message that is too long is refused");
        expect(received.type == -1, "a refused message has no type");
        expect(received.text.front() == 'x' && received.text.back() == 'x', "a refused message has no text");
        return;
    }
    const std::string_view text = textOf(message);
    const std::string_view arrived(received.text.data(), received.text.size());
    expect(received.result == 0, "a message that fits arrives");
    expect(received.type == typeOf(message), "the type arrives");
    expect(arrived.starts_with(text), "the text arrives");
    expect(arrived.find_first_not_of('\0', text.size()) == std::string_view::npos, "NULs fill the field");
    expect(isValidUtf8(text) == isUtf8(text), "both checks of UTF-8 agree");
}

void check(std::string_view message) {
    static const Service service;
    static const test::Sender sender(service.name);
    sender.send(message);
    sender.send(test::rawMessage(kFollowerType, "next"));
    checkFirst(receive(service), message);
    const Received next = receive(service);
    expect(next.result == 0 && next.type == kFollowerType, "the next message arrives as the next");
    expect(std::strncmp(next.text.data(), "next", kMessageTextSize) == 0, "it has its own text alone");
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check({reinterpret_cast<const char*>(data), size});
    return 0;
}
