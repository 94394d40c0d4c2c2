#pragma once

#include <chrono>
#include <string>

namespace orvane::bench {

/// What a piece of work takes, from the making of this object on.
class Measurement {
public:
    Measurement();

    double seconds() const;
    double processorSeconds() const; ///< of all threads, user and system

    /// One line of JSON on standard output: seconds, processorSeconds, peakKib of the process so far, and
    /// `more`, further members each behind a comma.
    void print(const std::string& more = {}) const;

private:
    std::chrono::steady_clock::time_point start_;
    double processorStart_;
};

} // namespace orvane::bench
