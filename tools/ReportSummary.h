#pragma once

#include "tools/CauseFinder.h"
#include "tools/ReportReader.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// First and last time of receipt, where times are known.
struct Period {
    std::optional<ReceiptTime> first;
    std::optional<ReceiptTime> last;

    void add(const std::optional<ReceiptTime>& time);
};

/// What is known of all logs with one cause.
struct CauseCount {
    const Cause* cause = nullptr;
    std::uint64_t count = 0;
    Period period;

    // The newest log with this cause.
    std::string exampleName;
    std::optional<ReceiptTime> exampleTime;
    std::string exampleText; ///< the end of a long log
    std::string exampleLine; ///< the line that shows the cause, if there is one
};

/// Counts logs by cause and by day. What it holds does not grow with the number of logs: a counter and an
/// example for each cause, and a counter for each cause and day of the last 400 days seen.
class ReportSummary {
public:
    using Day = std::chrono::sys_days;
    using CountsByCause = std::map<const Cause*, std::uint64_t>;

    static constexpr std::size_t kExampleBytes = std::size_t{16} * 1024;
    static constexpr std::size_t kMostDays = 400;

    void add(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis);
    void addSkipped(const SkippedFile& file);

    std::uint64_t total() const { return total_; }
    std::uint64_t logFiles() const { return logFiles_; } ///< of `total`, those that are logs and not reports
    std::uint64_t skipped(Unusable kind) const { return skipped_.at(static_cast<std::size_t>(kind)); }
    std::uint64_t skipped() const;
    const Period& period() const { return period_; }
    const std::map<Day, CountsByCause>& days() const { return days_; }

    /// The most frequent cause first.
    std::vector<CauseCount> byFrequency() const;

private:
    std::map<const Cause*, CauseCount> counts_;
    std::map<Day, CountsByCause> days_;
    std::array<std::uint64_t, 3> skipped_{};
    Period period_;
    std::uint64_t total_ = 0;
    std::uint64_t logFiles_ = 0;
};

/// "2026-11-21 20:29:57", in UTC.
std::string timeText(ReceiptTime time);

/// "41.2 %"
std::string shareText(std::uint64_t count, std::uint64_t total);

} // namespace orvane::tools
