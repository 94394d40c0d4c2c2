#pragma once

#include "sender/MessageNumber.h"
#include "sender/orvane_sender.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The types of message, in one table: the program, the tools, their tests and the guide for engines take
/// them from here.
namespace orvane {

/// What a message says; orvane_sender.h tells what the text of each holds.
enum class EngineMessageType : std::int32_t {
    progress = ORVANE_PROGRESS,
    step = ORVANE_STEP,
    network = ORVANE_NETWORK,
    end = ORVANE_END,
    error = ORVANE_ERROR,
    restart = ORVANE_RESTART,
    cancelButton = ORVANE_CANCEL_BUTTON,
};

namespace message_text {

constexpr bool isAnything(std::string_view /*text*/) { return true; }

template <std::int64_t kLast>
bool isNumberUpTo(std::string_view text) {
    const auto number = messageNumber(text);
    return number && *number >= 0 && *number <= kLast;
}

inline bool isEnd(std::string_view text) {
    const auto number = messageNumber(text);
    return !number || *number == 0 || *number == 1 || *number == 3;
}

inline bool isRestartQuestion(std::string_view text) {
    return text.size() >= 2 && messageNumber(text.substr(0, 2)).has_value();
}

} // namespace message_text

struct EngineMessageKind {
    EngineMessageType type;
    std::string_view name;             ///< as tools and scenarios take it
    std::string_view text;             ///< what its text holds, as usage texts and the guide say it
    bool (*accepts)(std::string_view); ///< whether that text is what an engine should send
};

/// Each at the place of its number.
inline constexpr std::array kEngineMessageKinds{
    EngineMessageKind{EngineMessageType::progress, "progress", "a number from 0 to 100",
                      message_text::isNumberUpTo<100>},
    EngineMessageKind{EngineMessageType::step, "step", "any text", message_text::isAnything},
    EngineMessageKind{EngineMessageType::network, "network", "0, 1 or 2", message_text::isNumberUpTo<2>},
    EngineMessageKind{EngineMessageType::end, "end", "0, 1 or 3, or what went wrong", message_text::isEnd},
    EngineMessageKind{EngineMessageType::error, "error", "any text", message_text::isAnything},
    EngineMessageKind{EngineMessageType::restart, "restart", "two digits and a question",
                      message_text::isRestartQuestion},
    EngineMessageKind{EngineMessageType::cancelButton, "cancel", "1 or 0", message_text::isNumberUpTo<1>},
};

inline constexpr auto kFirstUnassignedEngineMessageType =
    static_cast<std::int32_t>(kEngineMessageKinds.size());

/// Null for a type that is not assigned.
constexpr const EngineMessageKind* engineMessageKind(std::int32_t type) {
    return type >= 0 && type < kFirstUnassignedEngineMessageType
               ? &kEngineMessageKinds[static_cast<std::size_t>(type)]
               : nullptr;
}

/// Null for a name that is none.
constexpr const EngineMessageKind* engineMessageKind(std::string_view name) {
    for (const EngineMessageKind& kind : kEngineMessageKinds) {
        if (kind.name == name) {
            return &kind;
        }
    }
    return nullptr;
}

} // namespace orvane
