#include "tools/ReportSummary.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <tuple>

namespace orvane::tools {
namespace {

std::string endOf(const std::string& text) {
    if (text.size() <= ReportSummary::kExampleBytes) {
        return text;
    }
    const std::string end = text.substr(text.size() - ReportSummary::kExampleBytes);
    const std::size_t lineEnd = end.find('\n');
    return "…\n" + (lineEnd == std::string::npos ? end : end.substr(lineEnd + 1));
}

/// The newest log is the example; of several, the one whose name comes first, whatever the folders' order.
bool isBetterExample(const FoundLog& found, const CauseCount& count) {
    return count.count == 0 || found.received > count.exampleTime ||
           (found.received == count.exampleTime && found.received && found.name < count.exampleName);
}

} // namespace

void Period::add(const std::optional<ReceiptTime>& time) {
    if (time) {
        first = first ? std::min(*first, *time) : *time;
        last = last ? std::max(*last, *time) : *time;
    }
}

void ReportSummary::add(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis) {
    CauseCount& count = counts_[diagnosis.cause];
    count.cause = diagnosis.cause;
    if (isBetterExample(found, count)) {
        count.exampleName = found.name;
        count.exampleTime = found.received;
        count.exampleText = endOf(log.text());
        count.exampleLine = diagnosis.line.substr(0, kExampleBytes);
    }
    ++count.count;
    ++total_;
    logFiles_ += found.source == LogSource::file ? 1 : 0;
    count.period.add(found.received);
    period_.add(found.received);
    if (found.received) {
        ++days_[std::chrono::floor<std::chrono::days>(*found.received)][diagnosis.cause];
        if (days_.size() > kMostDays) {
            days_.erase(days_.begin());
        }
    }
}

void ReportSummary::addSkipped(const SkippedFile& file) {
    ++skipped_.at(static_cast<std::size_t>(file.kind));
}

std::uint64_t ReportSummary::skipped() const {
    return std::accumulate(skipped_.begin(), skipped_.end(), std::uint64_t{0});
}

std::vector<CauseCount> ReportSummary::byFrequency() const {
    std::vector<CauseCount> sorted;
    for (const auto& [cause, count] : counts_) {
        sorted.push_back(count);
    }
    std::ranges::sort(sorted, [](const CauseCount& left, const CauseCount& right) {
        return std::tuple(right.count, left.cause->id) < std::tuple(left.count, right.cause->id);
    });
    return sorted;
}

std::string timeText(ReceiptTime time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

std::string shareText(std::uint64_t count, std::uint64_t total) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %%",
                  total == 0 ? 0.0 : 100.0 * static_cast<double>(count) / static_cast<double>(total));
    return text.data();
}

} // namespace orvane::tools
