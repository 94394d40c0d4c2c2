#pragma once

#include "platform/Process.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// How a tool ended, and what it had printed on standard output.
struct Ending {
    int status;
    std::string output;
};

inline Ending runTool(const std::string& tool, const std::vector<std::string>& arguments) {
    platform::Process program;
    program.setLaunchPath(tool);
    program.setArguments(arguments);
    program.pipeStandardOutput();
    program.launch();
    std::string output(textOf(program.readStandardOutputToEnd()));
    return {program.waitUntilExit(), std::move(output)};
}

} // namespace orvane::tools
