#include "bench/Measurement.h"

#include <cstdio>
#include <fstream>
#include <string_view>
#include <sys/resource.h>

namespace orvane::bench {

namespace {

rusage ownUsage() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage;
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Of this program alone; getrusage(2) would count what the process was before it became this program.
long peakKib() {
    constexpr std::string_view label = "VmHWM:";
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(label)) {
            return std::stol(line.substr(label.size()));
        }
    }
    return 0;
}

double processorTime() {
    const rusage usage = ownUsage();
    return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

} // namespace

Measurement::Measurement() : start_(std::chrono::steady_clock::now()), processorStart_(processorTime()) {}

double Measurement::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

double Measurement::processorSeconds() const { return processorTime() - processorStart_; }

void Measurement::print(const std::string& more) const {
    const double took = seconds();
    std::printf("{\"seconds\": %.6f, \"processorSeconds\": %.6f, \"peakKib\": %ld%s}\n", took,
                processorSeconds(), peakKib(), more.c_str());
    std::fflush(stdout);
}

} // namespace orvane::bench
