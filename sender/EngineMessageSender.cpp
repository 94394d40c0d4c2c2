#include "sender/EngineMessageSender.h"
#include "sender/EngineMessageConnection.h"

namespace orvane {

namespace {

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

} // namespace

EngineMessageSender::EngineMessageSender(std::string_view serviceName)
    : connection_(std::make_unique<Connection>(serviceName)) {}

EngineMessageSender::~EngineMessageSender() = default;

void EngineMessageSender::send(EngineMessageType type, std::string_view text) {
    connection_->deliver(static_cast<std::int32_t>(type), fittingText(text));
}

} // namespace orvane
