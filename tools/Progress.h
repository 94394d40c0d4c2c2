#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace orvane::tools {

/// How far one step of the work is. Both counts are bytes; they are empty for a step that is not measured,
/// and `total` is empty while the length is unknown.
struct Progress {
    std::string_view what;
    std::optional<std::int64_t> done = {};
    std::optional<std::int64_t> total = {};
};

/// Called as the work goes on. May be empty.
using ProgressHandler = std::function<void(const Progress&)>;

inline void report(const ProgressHandler& handler, const Progress& progress) {
    if (handler) {
        handler(progress);
    }
}

/// One line that is overwritten as work goes on, and erased in the end. A step of 64 MiB or more shows its
/// size, speed and remaining time. One thread at a time.
class ProgressLine {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit ProgressLine(std::ostream& stream, Clock clock = &std::chrono::steady_clock::now)
        : stream_(stream), clock_(std::move(clock)) {}
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(const Progress& progress);

private:
    std::string measured(const Progress& progress) const;

    std::ostream& stream_;
    const Clock clock_;
    std::string step_;
    std::chrono::steady_clock::time_point stepStart_;
    std::chrono::steady_clock::time_point lastShown_;
    std::string shown_;
};

/// "48211968 bytes" as people read it: "46.0 MiB".
std::string readableSize(std::int64_t bytes);

/// Whether a person reads standard error on a terminal; into a file or a pipe no progress is written.
bool standardErrorIsATerminal();

} // namespace orvane::tools
