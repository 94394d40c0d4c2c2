#include "tools/CommandLine.h"
#include "tools/MessageOptions.h"
#include "tools/ToolError.h"

#include <iostream>

namespace {

using namespace orvane;
using namespace orvane::tools;

int fail(ExitStatus status, const std::string& text) {
    std::cerr << "orvane-message: " << text << "\n";
    if (status == ExitStatus::usage) {
        std::cerr << "Try orvane-message --help.\n";
    }
    return static_cast<int>(status);
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> all(arguments + 1, arguments + argumentCount);
    if (asksForHelp(all)) {
        std::cout << kMessageUsage;
        return 0;
    }
    try {
        const MessageOptions message = parseMessageOptions(all);
        EngineMessageSender(message.owner).send(message.type, message.text);
        return 0;
    } catch (const ToolError& error) {
        return fail(error.status(), error.what());
    } catch (const EngineMessageError& error) {
        return fail(ExitStatus::unavailable, error.what());
    } catch (const std::exception& error) {
        return fail(ExitStatus::internalError, error.what());
    }
}
