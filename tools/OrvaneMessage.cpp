#include "tools/CommandLine.h"
#include "tools/MessageOptions.h"
#include "tools/ToolError.h"

namespace {

using namespace orvane;
using namespace orvane::tools;

int sendMessage(const Arguments& arguments) {
    const MessageOptions message = parseMessageOptions(arguments);
    try {
        EngineMessageSender(message.owner).send(message.type, message.text);
    } catch (const EngineMessageError& error) {
        throw ToolError(ExitStatus::unavailable, error.what());
    }
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments) {
    return runTool("orvane-message", argumentCount, arguments, sendMessage);
}
