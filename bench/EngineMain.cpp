#include "sender/EngineMessageSender.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace orvane;

constexpr int kUsageStatus = 64;
constexpr int kFailureStatus = 70;
constexpr int kHundred = 100;

std::string fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

/// What an engine is given after "--owner".
std::string ownerIn(const std::vector<std::string>& arguments) {
    for (std::size_t index = 0; index + 1 < arguments.size(); ++index) {
        if (arguments[index] == "--owner") {
            return arguments[index + 1];
        }
    }
    return {};
}

/// Every second message is a step, every second a position of the bar.
double sendMessages(EngineMessageSender& sender, long count) {
    const auto start = std::chrono::steady_clock::now();
    for (long index = 0; index < count; ++index) {
        if (index % 2 == 0) {
            sender.send(EngineMessageType::step, "Copying file " + std::to_string(index));
        } else {
            sender.send(EngineMessageType::progress, std::to_string(index % kHundred));
        }
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

/// An engine that sends BENCH_MESSAGES messages as fast as they are taken and ends the run. It makes the file
/// BENCH_BEGUN first and writes the seconds that the sending took into BENCH_SENT; each may be left out.
int main(int argumentCount, char** arguments) {
    const std::vector<std::string> all(arguments + 1, arguments + argumentCount);
    if (all == std::vector<std::string>{"--version"}) {
        std::cout << "14.2.7\n";
        return 0;
    }
    const std::string owner = ownerIn(all);
    if (owner.empty()) {
        std::cerr << "BenchEngine: --owner is missing\n";
        return kUsageStatus;
    }
    try {
        EngineMessageSender sender(owner);
        if (const std::string begun = fromEnvironment("BENCH_BEGUN"); !begun.empty()) {
            std::ofstream(begun) << "begun\n";
        }
        const std::string count = fromEnvironment("BENCH_MESSAGES");
        const double seconds = sendMessages(sender, count.empty() ? 0 : std::stol(count));
        if (const std::string sent = fromEnvironment("BENCH_SENT"); !sent.empty()) {
            std::ofstream(sent) << seconds << "\n";
        }
        sender.send(EngineMessageType::end, "0");
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "BenchEngine: " << error.what() << "\n";
        return kFailureStatus;
    }
}
