#include "config/Deployment.h"
#include "engine/MachPort.h"
#include "log/Logger.h"
#include "platform/Digest.h"
#include "platform/Files.h"
#include "platform/MessagePort.h"
#include "sender/EngineMessageSender.h"
#include "sender/MessageNumber.h"
#include "tests/support/TemporaryFolder.h"
#include "verify/Crypto.h"
#include "verify/Versions.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <string>

namespace orvane::bench {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

void countBytes(benchmark::State& state, std::size_t bytesEachTime) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytesEachTime));
}

void DigestInMemory(benchmark::State& state, platform::DigestAlgorithm algorithm) {
    const Bytes memory(kMiB, std::byte{0x5A});
    while (state.KeepRunning()) {
        platform::Digest digest(algorithm);
        digest.update(memory);
        benchmark::DoNotOptimize(digest.final());
    }
    countBytes(state, memory.size());
}
BENCHMARK_CAPTURE(DigestInMemory, md5, platform::DigestAlgorithm::md5);
BENCHMARK_CAPTURE(DigestInMemory, sha256, platform::DigestAlgorithm::sha256);

void DigestOfFile(benchmark::State& state, const std::string& algorithm) {
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "engine";
    const std::size_t size = 16 * kMiB;
    platform::writeNewFile(file, Bytes(size, std::byte{0x5A}));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(computeFileChecksum(file, algorithm));
    }
    countBytes(state, size);
}
BENCHMARK_CAPTURE(DigestOfFile, md5, "md5");
BENCHMARK_CAPTURE(DigestOfFile, sha256, "sha256");

/// The argument is the key's length in bytes.
void Transform(benchmark::State& state) {
    const Bytes content(kMiB, std::byte{0x5A});
    std::string key;
    for (std::int64_t count = 0; count < state.range(0); ++count) {
        key += "9c";
    }
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(computeXOREncryption(content, key));
    }
    countBytes(state, content.size());
}
BENCHMARK(Transform)->Arg(1)->Arg(16)->Arg(20)->Arg(32)->Arg(33)->Arg(64);

/// What the transform cannot go below.
void Copy(benchmark::State& state) {
    const Bytes content(kMiB, std::byte{0x5A});
    while (state.KeepRunning()) {
        const Bytes copy(content.begin(), content.end());
        benchmark::DoNotOptimize(copy.data());
    }
    countBytes(state, content.size());
}
BENCHMARK(Copy);

/// Without the sending, which lies between the measured times.
void MessageReceipt(benchmark::State& state) {
    constexpr int batch = 8; // fewer than the socket takes before a sender waits
    const std::string name = "bench." + RandomString(10);
    std::uint32_t port = 0;
    if (platform::allocateReceivePort(port) != 0 || platform::insertSendRight(port) != 0 ||
        platform::registerPort(port, name.c_str()) != 0) {
        throw std::runtime_error("no port to receive on");
    }
    EngineMessageSender sender(name);
    std::array<char, platform::kMessageTextSize> text{};
    std::int32_t type = 0;
    while (state.KeepRunning()) {
        for (int count = 0; count < batch; ++count) {
            sender.send(EngineMessageType::step, "Copying files");
        }
        const auto start = std::chrono::steady_clock::now();
        for (int count = 0; count < batch; ++count) {
            waitMachPortMessage(port, &type, text.data(), text.size());
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(MessageReceipt)->UseManualTime();

void NumberRule(benchmark::State& state, const std::string& text) {
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(messageNumber(text));
    }
}
BENCHMARK_CAPTURE(NumberRule, short_number, "42");
BENCHMARK_CAPTURE(NumberRule, longest_number, "-9223372036854775808");
BENCHMARK_CAPTURE(NumberRule, no_number, "42 files");

void VersionComparison(benchmark::State& state, const std::string& left, const std::string& right) {
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(compareVersions(left, right));
    }
}
BENCHMARK_CAPTURE(VersionComparison, alike, "14.2.7", "14.2.7");
BENCHMARK_CAPTURE(VersionComparison, shorter, "14.2", "14.2.0.1");
BENCHMARK_CAPTURE(VersionComparison, long_numbers, "14.20240101120000.7", "14.20240101120001.7");

void LogLine(benchmark::State& state) {
    const test::TemporaryFolder folder;
    Logger logger(productDeployment());
    logger.OpenProgramLog(folder.path());
    while (state.KeepRunning()) {
        logger.WriteProgramLog("Checking if orvane versions match");
    }
}
BENCHMARK(LogLine);

} // namespace
} // namespace orvane::bench

/// The log's lines go to standard output as well, so the report goes to standard error.
int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 1;
    }
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
