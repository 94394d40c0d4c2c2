#pragma once

#include "sender/EngineMessageSender.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane::tools {

struct MessageOptions {
    std::string owner; ///< the service's name, as an engine is given it
    EngineMessageType type = EngineMessageType::step;
    std::string text;
};

extern const std::string_view kMessageUsage;

/// Reads the arguments after the program's name. Throws `ToolError`: with the status for a usage error, or,
/// unless forced, with that for bad data when the bootstrapper would ignore the message, cut it or stop.
MessageOptions parseMessageOptions(const std::vector<std::string>& arguments);

} // namespace orvane::tools
