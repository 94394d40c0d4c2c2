#include "app/RunApplication.h"
#include "bench/StallProbe.h"
#include "demo/RehearsalAuthorities.h"
#include "demo/RehearsalDeployment.h"
#include "platform/Queue.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace {

using namespace orvane;

constexpr int kUsageStatus = 64;
constexpr std::chrono::milliseconds kBetweenLooks(1);

/// Once the engine has begun to speak, keeps in `file` how long the main thread kept others waiting.
void reportStalls(const std::filesystem::path& file, const std::filesystem::path& begun) {
    while (!std::filesystem::exists(begun)) {
        std::this_thread::sleep_for(kBetweenLooks);
    }
    platform::mainQueueAsync([file] {
        platform::utilityQueueAsync([file, stalls = bench::watchMainThread()] {
            double longestEvent = -1;
            double longestItem = -1;
            while (true) {
                if (stalls->longestEventWait > longestEvent || stalls->longestItemWait > longestItem) {
                    longestEvent = stalls->longestEventWait;
                    longestItem = stalls->longestItemWait;
                    const std::string partial = file.string() + ".partial";
                    std::ofstream(partial) << "{\"longestEventWait\": " << longestEvent
                                           << ", \"longestItemWait\": " << longestItem << "}\n";
                    std::filesystem::rename(partial, file);
                }
                std::this_thread::sleep_for(kBetweenLooks);
            }
        });
    });
}

} // namespace

/// A rehearsal that also watches its main thread: BENCH_STALLS names the file for what it saw, BENCH_BEGUN
/// the file that the engine makes when it begins.
int main(int argumentCount, char** arguments) {
    const char* folder = std::getenv("ORVANE_REHEARSAL");
    const char* stalls = std::getenv("BENCH_STALLS");
    const char* begun = std::getenv("BENCH_BEGUN");
    if (folder == nullptr || stalls == nullptr || begun == nullptr) {
        std::fprintf(stderr, "BenchRehearsal: ORVANE_REHEARSAL, BENCH_STALLS and BENCH_BEGUN must be set\n");
        return kUsageStatus;
    }
    static const demo::Rehearsal rehearsal = demo::readRehearsal(folder);
    demo::trustAuthoritiesIn(rehearsal.certificateAuthority);
    platform::utilityQueueAsync([stalls, begun] { reportStalls(stalls, begun); });
    return runApplication(argumentCount, arguments, rehearsal.deployment);
}
