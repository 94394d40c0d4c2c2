#include "verify/Shell.h"

#include "platform/Error.h"
#include "platform/Process.h"
#include "platform/ProgrammingError.h"

namespace orvane {

int Shell(const std::vector<std::string>& args) {
    platform::Process process;
    process.setLaunchPath("/usr/bin/env");
    process.setArguments(args);
    try {
        process.launch();
    } catch (const platform::Error& error) {
        unexpectedError("a command could not be started: " + error.localizedDescription());
    }
    return process.waitUntilExit();
}

} // namespace orvane
