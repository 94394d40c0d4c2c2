#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace orvane::tools {

/// Told what is being done, and of how much it is done (0 to 1) where that is known. May be empty.
using ProgressHandler = std::function<void(std::string_view what, std::optional<double> fraction)>;

inline void tell(const ProgressHandler& handler, std::string_view what,
                 std::optional<double> fraction = std::nullopt) {
    if (handler) {
        handler(what, fraction);
    }
}

/// One line that is written over as work goes on, and is gone in the end. One thread at a time.
class ProgressLine {
public:
    explicit ProgressLine(std::ostream& stream) : stream_(stream) {}
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::string_view what, std::optional<double> fraction);

private:
    std::ostream& stream_;
    std::string shown_;
};

/// Whether a person reads standard error on a terminal; into a file or a pipe no progress is written.
bool standardErrorIsATerminal();

} // namespace orvane::tools
