#include "tests/platform/ProcessFixture.h"

#include "platform/Bytes.h"

namespace orvane::test {

using platform::Process;

std::unique_ptr<Process> shell(const std::string& script, const std::vector<std::string>& arguments) {
    auto process = std::make_unique<Process>();
    std::vector<std::string> all{"-c", script, "shell"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    process->setLaunchPath("/bin/sh");
    process->setArguments(all);
    return process;
}

std::string outputOf(Process& process) {
    process.pipeStandardOutput();
    process.launch();
    return std::string(textOf(process.readStandardOutputToEnd()));
}

int resultOf(Process& process) {
    process.launch();
    return process.waitUntilExit();
}

} // namespace orvane::test
