#include "bench/EvpLoop.h"
#include "bench/Measurement.h"
#include "config/Deployment.h"
#include "engine/MachPort.h"
#include "log/Logger.h"
#include "model/FileDownloadInfo.h"
#include "platform/MessagePort.h"
#include "verify/Crypto.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace orvane;
using bench::Measurement;
using Arguments = std::vector<std::string>;

constexpr int kUsageStatus = 64;
constexpr int kFailureStatus = 70;

Bytes someBytes(std::size_t count) {
    Bytes bytes(count);
    unsigned state = 1;
    for (std::byte& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::byte>(state >> 24U);
    }
    return bytes;
}

void demand(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::runtime_error(what);
    }
}

/// digest ALGORITHM FILE
void digest(const Arguments& arguments) {
    const Measurement measurement;
    const std::string text = computeFileChecksum(arguments.at(1), arguments.at(0));
    demand(!text.empty(), "there is no digest");
    measurement.print();
}

/// digest-memory ALGORITHM BYTES
void digestMemory(const Arguments& arguments) {
    const Bytes memory = someBytes(std::stoull(arguments.at(1)));
    const Measurement measurement;
    bench::digestMemory(arguments.at(0), memory);
    measurement.print();
}

double bestOf(const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); }

/// transform BYTES KEY ROUNDS: both ways side by side, each into memory that it asks for anew.
void transform(const Arguments& arguments) {
    const Bytes content = someBytes(std::stoull(arguments.at(0)));
    const std::string& key = arguments.at(1);
    std::vector<double> transforms;
    std::vector<double> copies;
    for (int round = std::stoi(arguments.at(2)); round > 0; --round) {
        const Measurement copying;
        const Bytes copy(content.begin(), content.end());
        copies.push_back(copying.seconds());
        demand(copy.back() == content.back(), "the copy differs");

        const Measurement transforming;
        const XorResult result = computeXOREncryption(content, key);
        transforms.push_back(transforming.seconds());
        demand(result.code == kXorSuccess, "the transform failed");
    }
    std::printf("{\"transformSeconds\": %.9f, \"copySeconds\": %.9f}\n", bestOf(transforms), bestOf(copies));
}

/// decipher ENCIPHERED PLAIN SIZE KEY
void decipher(const Arguments& arguments) {
    FileDownloadInfo info;
    info.Size = std::stoll(arguments.at(2));
    info.Checksum = arguments.at(3);
    const Measurement measurement;
    demand(decryptXORFile(info, arguments.at(1), arguments.at(0)) == kXorSuccess, "deciphering failed");
    measurement.print();
}

/// log FOLDER LINES: they appear on standard output too, in front of what was measured.
void writeLog(const Arguments& arguments) {
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    Logger logger(productDeployment());
    logger.OpenProgramLog(arguments.at(0));
    const Measurement measurement;
    for (long line = std::stol(arguments.at(1)); line > 0; --line) {
        logger.WriteProgramLog("Checking if orvane versions match");
    }
    measurement.print();
}

/// receive SERVICE COUNT: the socket alone. Prints "ready" before.
void receive(const Arguments& arguments) {
    std::uint32_t port = 0;
    demand(platform::allocateReceivePort(port) == 0, "no port");
    demand(platform::insertSendRight(port) == 0, "nobody may send");
    demand(platform::registerPort(port, arguments.at(0).c_str()) == 0, "the name is taken");
    std::printf("ready\n");
    std::fflush(stdout);
    platform::EngineMessage message;
    demand(platform::receiveMessage(port, message) == 0, "a message was lost");
    const Measurement measurement;
    for (long left = std::stol(arguments.at(1)) - 1; left > 0; --left) {
        demand(platform::receiveMessage(port, message) == 0, "a message was lost");
    }
    measurement.print();
}

} // namespace

/// One stage of a run, measured in a process of its own.
int main(int argumentCount, char** arguments) {
    const Arguments all(arguments + 1, arguments + argumentCount);
    const std::map<std::string, std::function<void(const Arguments&)>> stages{
        {"digest", digest},       {"digest-memory", digestMemory},
        {"transform", transform}, {"decipher", decipher},
        {"log", writeLog},        {"receive", receive}};
    const auto stage = all.empty() ? stages.end() : stages.find(all.front());
    if (stage == stages.end()) {
        std::fprintf(stderr, "BenchStage: which stage?\n");
        return kUsageStatus;
    }
    try {
        stage->second({all.begin() + 1, all.end()});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "BenchStage %s: %s\n", all.front().c_str(), error.what());
        return kFailureStatus;
    }
}
