#include "sender/EngineMessageConnection.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// The length of the longest beginning of `text` that fits into a message and cuts no UTF-8 character in two.
std::size_t fittingSize(const char* text) {
    const std::size_t size = strnlen(text, ORVANE_SENDER_TEXT_LIMIT + 1);
    if (size <= ORVANE_SENDER_TEXT_LIMIT) {
        return size;
    }
    const auto continuesCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    std::size_t end = ORVANE_SENDER_TEXT_LIMIT;
    while (end > 0 && continuesCharacter(text[end])) {
        --end;
    }
    return end;
}

void describe(char* error, std::size_t errorSize, const char* what, const char* serviceName,
              const char* reason) {
    if (error != nullptr && errorSize > 0) {
        static_cast<void>(std::snprintf(error, errorSize, "%s %.107s: %s", what, serviceName, reason));
    }
}

/// Null if a service may have that name.
const char* objectionToName(const char* name) {
    const std::size_t size = std::strlen(name);
    return size == 0 || size > ORVANE_SENDER_NAME_LIMIT ? "a service name has 1 to 107 bytes" : nullptr;
}

static_assert(ORVANE_SENDER_NAME_LIMIT == 107, "the text above says so");

} // namespace

orvane_sender* orvane_sender_open(const char* service_name, char* error, size_t error_size) {
    const char* reason = objectionToName(service_name);
    auto* const sender = static_cast<orvane_sender*>(std::calloc(1, sizeof(orvane_sender)));
    if (sender == nullptr) {
        reason = "out of memory";
    } else if (reason == nullptr) {
        std::memcpy(sender->serviceName, service_name, std::strlen(service_name) + 1);
        reason = orvane::connection::open(*sender);
    }
    if (reason != nullptr) {
        describe(error, error_size, "cannot connect to", service_name, reason);
        std::free(sender);
        return nullptr;
    }
    return sender;
}

int orvane_sender_send(const orvane_sender* sender, int32_t type, const char* text, char* error,
                       size_t error_size) {
    if (const char* const reason = orvane::connection::deliver(*sender, type, text, fittingSize(text))) {
        describe(error, error_size, "cannot send to", sender->serviceName, reason);
        return -1;
    }
    return 0;
}

void orvane_sender_close(orvane_sender* sender) {
    if (sender != nullptr) {
        orvane::connection::close(*sender);
        std::free(sender);
    }
}
