#include "tools/MessageOptions.h"

#include "engine/MessageNumber.h"
#include "platform/Utf8.h"
#include "tools/ToolError.h"

#include <limits>
#include <map>

namespace orvane::tools {

namespace {

constexpr char kDescription[] = "Sends one message to a running bootstrapper, as its engine would. A TEXT "
                                "that begins with a hyphen follows\n"
                                "\"--\".";

constexpr char kStatuses[] = "0 delivered, 64 wrong usage, 65 a message that the bootstrapper would ignore,\n"
                             "truncate or stop at, 69 no bootstrapper receives messages at OWNER.";

EngineMessageType typeNamed(const std::string& name) {
    static const std::map<std::string, EngineMessageType> types{
        {"progress", EngineMessageType::progress},  {"step", EngineMessageType::step},
        {"network", EngineMessageType::network},    {"end", EngineMessageType::end},
        {"error", EngineMessageType::error},        {"restart", EngineMessageType::restart},
        {"cancel", EngineMessageType::cancelButton}};
    if (const auto found = types.find(name); found != types.end()) {
        return found->second;
    }
    const auto number = messageNumber(name);
    if (!number || *number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max()) {
        refuseUsage("unknown type \"" + name + "\"");
    }
    return static_cast<EngineMessageType>(*number);
}

[[noreturn]] void refuseMessage(const std::string& text) {
    throw ToolError(ExitStatus::badData, text + " (--force sends it all the same)");
}

void checkNumber(const std::string& text, const std::string& type, std::int64_t last) {
    const auto number = messageNumber(text);
    if (!number || *number < 0 || *number > last) {
        refuseMessage("the text of " + type + " is a number from 0 to " + std::to_string(last) + ", not \"" +
                      text + "\"");
    }
}

void checkEnd(const std::string& text) {
    const auto number = messageNumber(text);
    if (number && *number != 0 && *number != 1 && *number != 3) {
        refuseMessage("the number of an end is 0, 1 or 3, not " + text);
    }
}

void checkRestart(const std::string& text) {
    if (text.size() < 2 || !messageNumber(text.substr(0, 2))) {
        refuseMessage("a restart begins with the two digits of its step; the bootstrapper would stop");
    }
}

void checkMessage(EngineMessageType type, const std::string& text) {
    if (!isValidUtf8(text)) {
        refuseMessage("the text is not valid UTF-8; the bootstrapper would stop");
    }
    if (text.size() > kEngineMessageTextLimit) {
        refuseMessage("the text has " + std::to_string(text.size()) + " bytes; it would be cut at " +
                      std::to_string(kEngineMessageTextLimit));
    }
    switch (type) {
    case EngineMessageType::progress:
        return checkNumber(text, "progress", 100);
    case EngineMessageType::network:
        return checkNumber(text, "network", 2);
    case EngineMessageType::cancelButton:
        return checkNumber(text, "cancel", 1);
    case EngineMessageType::end:
        return checkEnd(text);
    case EngineMessageType::restart:
        return checkRestart(text);
    case EngineMessageType::step:
    case EngineMessageType::error:
        return;
    }
    refuseMessage("bootstrappers know the types 0 to 6");
}

} // namespace

MessageOptions parseMessageOptions(const Arguments& arguments) {
    CommandLine line("orvane-message", kDescription, kStatuses);
    MessageOptions options;
    std::string type;
    bool force = false;
    line.option("OWNER", options.owner, "",
                "what the bootstrapper gave its engine after --owner; its log has it in\n"
                "the line \"Spawning orvane\"")
        ->required();
    line.option("TYPE", type, "",
                "progress, step, network, end, error, restart or cancel; or the type's\nnumber")
        ->required();
    line.add_option("TEXT", options.text, "the text of the message; empty without it");
    line.add_flag("--force", force, "send also what the bootstrapper would ignore, truncate or stop at");
    line.read(arguments);
    options.type = typeNamed(type);
    if (!force) {
        checkMessage(options.type, options.text);
    }
    return options;
}

} // namespace orvane::tools
