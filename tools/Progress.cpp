#include "tools/Progress.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view kEraseLine = "\r\x1b[K";
constexpr std::int64_t kMeasuredFrom = 64LL << 20;
constexpr auto kShownEvery = 200ms;

std::string readableTime(double seconds) {
    const std::int64_t whole = std::llround(seconds);
    return whole < 60 ? std::to_string(whole) + " s"
                      : std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
}

} // namespace

std::string readableSize(std::int64_t bytes) {
    constexpr std::array<const char*, 4> units{"KiB", "MiB", "GiB", "TiB"};
    if (bytes < 1024) {
        return std::to_string(bytes) + " bytes";
    }
    double size = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; size >= 1024 && unit + 1 < units.size(); ++unit) {
        size /= 1024;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %s", size, units.at(unit));
    return text.data();
}

ProgressLine::~ProgressLine() {
    if (!shown_.empty()) {
        stream_ << kEraseLine << std::flush;
    }
}

void ProgressLine::show(const Progress& progress) {
    const auto now = clock_();
    const bool isNewStep = progress.what != step_;
    if (isNewStep) {
        step_ = progress.what;
        stepStart_ = now;
    } else if (now - lastShown_ < kShownEvery) {
        return;
    }
    const std::string line = step_ + measured(progress);
    if (line != shown_) {
        stream_ << kEraseLine << line << std::flush;
        shown_ = line;
        lastShown_ = now;
    }
}

std::string ProgressLine::measured(const Progress& progress) const {
    if (!progress.done || progress.total.value_or(*progress.done) < kMeasuredFrom) {
        return {};
    }
    const auto done = static_cast<double>(*progress.done);
    const std::chrono::duration<double> elapsed = clock_() - stepStart_;
    std::string text = ": " + readableSize(*progress.done);
    if (progress.total) {
        text += " of " + readableSize(*progress.total);
    }
    if (elapsed < 1s) {
        return text; // too early for a speed
    }
    const double speed = done / elapsed.count();
    text += ", " + readableSize(static_cast<std::int64_t>(speed)) + "/s";
    if (progress.total && speed > 0) {
        text += ", " + readableTime((static_cast<double>(*progress.total) - done) / speed) + " left";
    }
    return text;
}

bool standardErrorIsATerminal() { return ::isatty(STDERR_FILENO) == 1; }

} // namespace orvane::tools
