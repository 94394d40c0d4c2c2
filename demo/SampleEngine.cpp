#include "demo/DefaultScenario.h"
#include "demo/EngineArguments.h"
#include "demo/ProcessRecord.h"
#include "demo/Scenario.h"
#include "demo/ScenarioPlayer.h"
#include "sender/EngineMessageSender.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

using namespace orvane;
using namespace orvane::demo;

constexpr int kUsageStatus = 64;
constexpr int kBadScenarioStatus = 65;
constexpr int kUnavailableStatus = 69;

constexpr char kVersion[] = "14.2.7";

/// A rehearsal may replace what this engine plays and the version it reports, since an engine at its fixed
/// place can be told nothing else: it is given its owner's environment.
std::string fromEnvironment(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

std::string scenarioText() {
    const std::string file = fromEnvironment("ORVANE_SAMPLE_SCENARIO", "");
    if (file.empty()) {
        return kDefaultScenario;
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ScenarioError("cannot read " + file);
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

int playScenario(const EngineArguments& arguments, const std::string& processRecord) {
    EngineMessageSender sender(arguments.owner);
    try {
        const auto commands = parseScenario(scenarioText(), arguments.step, arguments.locale);
        return ScenarioPlayer(sender, arguments.ownerProcess, processRecord).play(commands);
    } catch (const ScenarioError& error) {
        // The window follows the messages alone: without one it would wait for ever.
        sender.send(EngineMessageType::end, std::string("Scenario: ") + error.what());
        std::cerr << "SampleEngine: " << error.what() << "\n";
        return kBadScenarioStatus;
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> all(arguments, arguments + argumentCount);
    try {
        const std::string processRecord = recordOfThisProcess(all);
        if (argumentCount == 2 && all[1] == "--version") {
            std::cout << fromEnvironment("ORVANE_SAMPLE_VERSION", kVersion) << "\n";
            return 0;
        }
        return playScenario(parseEngineArguments({all.begin() + 1, all.end()}), processRecord);
    } catch (const EngineArgumentError& error) {
        std::cerr << "SampleEngine: " << error.what() << "\n";
        return kUsageStatus;
    } catch (const std::exception& error) {
        std::cerr << "SampleEngine: " << error.what() << "\n";
        return kUnavailableStatus;
    }
}
