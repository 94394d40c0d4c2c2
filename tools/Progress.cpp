#include "tools/Progress.h"

#include <algorithm>
#include <unistd.h>

namespace orvane::tools {
namespace {

/// Back to the line's beginning, and away with what stood there.
constexpr std::string_view kEraseLine = "\r\x1b[K";

} // namespace

ProgressLine::~ProgressLine() {
    if (!shown_.empty()) {
        stream_ << kEraseLine << std::flush;
    }
}

void ProgressLine::show(std::string_view what, std::optional<double> fraction) {
    std::string line(what);
    if (fraction) {
        line += ' ';
        line += std::to_string(static_cast<int>(std::clamp(*fraction, 0.0, 1.0) * 100));
        line += " %";
    }
    if (line != shown_) {
        stream_ << kEraseLine << line << std::flush;
        shown_ = line;
    }
}

bool standardErrorIsATerminal() { return ::isatty(STDERR_FILENO) == 1; }

} // namespace orvane::tools
