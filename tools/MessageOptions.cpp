#include "tools/MessageOptions.h"

#include "platform/Utf8.h"
#include "sender/EngineMessageTypes.h"
#include "tools/ToolError.h"

#include <limits>

namespace orvane::tools {

namespace {

constexpr char kDescription[] = "Sends one message to a running bootstrapper, as its engine would. A TEXT "
                                "that begins with a hyphen follows\n"
                                "\"--\".";

constexpr char kStatuses[] = "0 delivered, 64 wrong usage, 65 a message that the bootstrapper would ignore,\n"
                             "truncate or stop at, 69 no bootstrapper receives messages at OWNER.";

/// The help of TYPE: each name with its number and what its text holds.
std::string typesHelp() {
    std::string help = "one of these names, or a type's number:";
    for (const EngineMessageKind& kind : kEngineMessageKinds) {
        help += "\n" + std::string(kind.name) + " (" + std::to_string(static_cast<std::int32_t>(kind.type)) +
                "): " + std::string(kind.text);
    }
    return help;
}

EngineMessageType typeNamed(const std::string& name) {
    if (const auto* kind = engineMessageKind(name)) {
        return kind->type;
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

void checkMessage(EngineMessageType type, const std::string& text) {
    if (!isValidUtf8(text)) {
        refuseMessage("the text is not valid UTF-8; the bootstrapper would stop");
    }
    if (text.size() > kEngineMessageTextLimit) {
        refuseMessage("the text has " + std::to_string(text.size()) + " bytes; it would be cut at " +
                      std::to_string(kEngineMessageTextLimit));
    }
    const EngineMessageKind* const kind = engineMessageKind(static_cast<std::int32_t>(type));
    if (kind == nullptr) {
        refuseMessage("bootstrappers know the types 0 to " +
                      std::to_string(kFirstUnassignedEngineMessageType - 1));
    }
    if (!kind->accepts(text)) {
        refuseMessage("the text of " + std::string(kind->name) + " is " + std::string(kind->text) +
                      ", not \"" + text + "\"");
    }
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
    line.option("TYPE", type, "", typesHelp())->required();
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
