#include "demo/ProcessRecord.h"

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace orvane::demo {
namespace {

nlohmann::json environmentOfThisProcess() {
    nlohmann::json environment = nlohmann::json::object();
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::size_t separator = text.find('=');
        environment[text.substr(0, separator)] =
            separator == std::string::npos ? "" : text.substr(separator + 1);
    }
    return environment;
}

nlohmann::json openDescriptors() {
    nlohmann::json descriptors = nlohmann::json::object();
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(entry.path(), error);
        // The listing shows the descriptor through which it is read, too.
        if (!error && !target.string().starts_with("/proc/" + std::to_string(getpid()) + "/fd")) {
            descriptors[entry.path().filename().string()] = target.string();
        }
    }
    return descriptors;
}

std::string statusField(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":\t")) {
            return line.substr(name.size() + 2);
        }
    }
    return {};
}

} // namespace

std::string recordOfThisProcess(const std::vector<std::string>& arguments) {
    const nlohmann::json record{
        {"arguments", arguments},
        {"environment", environmentOfThisProcess()},
        {"workingDirectory", std::filesystem::current_path().string()},
        {"descriptors", openDescriptors()},
        {"blockedSignals", statusField("SigBlk")},
        {"ignoredSignals", statusField("SigIgn")},
        {"caughtSignals", statusField("SigCgt")},
    };
    return record.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

} // namespace orvane::demo
