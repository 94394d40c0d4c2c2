#include "engine/EngineMessageSender.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace orvane {
namespace {

constexpr std::size_t kTypeSize = 4;
using Datagram = std::array<char, kTypeSize + kEngineMessageTextLimit + 1>;

[[noreturn]] void fail(const std::string& what, const std::string& serviceName, int errorNumber) {
    throw EngineMessageError(what + " " + serviceName + ": " + std::generic_category().message(errorNumber));
}

/// The longest beginning of `text` that fits into a message and cuts no UTF-8 character in two.
std::string_view fittingText(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.size() <= kEngineMessageTextLimit) {
        return text;
    }
    const auto continuesCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    std::size_t end = kEngineMessageTextLimit;
    while (end > 0 && continuesCharacter(text[end])) {
        --end;
    }
    return text.substr(0, end);
}

Datagram encode(EngineMessageType type, std::string_view text) {
    Datagram datagram{};
    const auto number = static_cast<std::uint32_t>(type);
    for (std::size_t index = 0; index < kTypeSize; ++index) {
        datagram[index] = static_cast<char>((number >> (8 * index)) & 0xFFU);
    }
    std::ranges::copy(fittingText(text), datagram.begin() + kTypeSize);
    return datagram;
}

} // namespace

struct EngineMessageSender::Connection {
    explicit Connection(std::string_view name) : serviceName(name) {}
    ~Connection() {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::string serviceName;
    int descriptor = -1;
};

EngineMessageSender::EngineMessageSender(std::string_view serviceName)
    : connection_(std::make_unique<Connection>(serviceName)) {
    const std::string& name = connection_->serviceName;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // An abstract address, see unix(7): a leading NUL, then the name, ended by the address's length.
    if (name.empty() || name.size() >= sizeof(address.sun_path)) {
        fail("cannot connect to", name, EINVAL);
    }
    std::ranges::copy(name, std::begin(address.sun_path) + 1);
    const auto addressSize = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());

    connection_->descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (connection_->descriptor < 0 ||
        connect(connection_->descriptor, reinterpret_cast<const sockaddr*>(&address), addressSize) != 0) {
        fail("cannot connect to", name, errno);
    }
}

EngineMessageSender::~EngineMessageSender() = default;

void EngineMessageSender::send(EngineMessageType type, std::string_view text) {
    const Datagram datagram = encode(type, text);
    ssize_t sent = -1;
    do {
        sent = ::send(connection_->descriptor, datagram.data(), datagram.size(), MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    if (sent < 0) {
        fail("cannot send to", connection_->serviceName, errno);
    }
}

} // namespace orvane
