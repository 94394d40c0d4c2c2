#pragma once

#include "sender/EngineMessageSender.h"
#include "tools/CommandLine.h"

#include <string>

namespace orvane::tools {

struct MessageOptions {
    std::string owner; ///< the service's name, as an engine is given it
    EngineMessageType type = EngineMessageType::step;
    std::string text;
};

/// Reads the arguments after the program's name. Throws `ToolError`: with the status for a usage error, or,
/// unless forced, with that for bad data when the bootstrapper would ignore the message, cut it or stop.
MessageOptions parseMessageOptions(const Arguments& arguments);

} // namespace orvane::tools
