#include "tools/DayChart.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace orvane::tools {
namespace {

using Day = ReportSummary::Day;

constexpr int kMostColumns = 60;
constexpr double kWidth = 960;
constexpr double kHeight = 300;
constexpr double kLeft = 56; // room for the numbers of the axis
constexpr double kTop = 12;
constexpr double kBottom = 28; // room for the dates
constexpr double kPlotHeight = kHeight - kTop - kBottom;
constexpr double kWidestColumn = 48;

std::string number(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    return text.data();
}

std::string dateText(Day day) { return timeText(day).substr(0, 10); }

/// 1, 2 or 5 times a power of ten, at least `value`.
std::uint64_t roundedUp(std::uint64_t value) {
    std::uint64_t step = 1;
    while (true) {
        for (const std::uint64_t factor : {1U, 2U, 5U}) {
            if (step * factor >= value) {
                return step * factor;
            }
        }
        step *= 10;
    }
}

/// Counts of one day by colour.
using Column = std::array<std::uint64_t, kColouredCauses + 1>;

class Chart {
public:
    explicit Chart(const ReportSummary& summary) : summary_(summary), causes_(summary.byFrequency()) {
        last_ = summary.days().rbegin()->first;
        first_ = std::max(summary.days().begin()->first, last_ - std::chrono::days(kMostColumns - 1));
        columns_ = static_cast<int>((last_ - first_).count()) + 1;
        for (const auto& [day, counts] : summary.days()) {
            if (day >= first_) {
                const Column column = columnOf(counts);
                highest_ = std::max(highest_, totalOf(column));
            }
        }
        highest_ = roundedUp(highest_);
        step_ = (kWidth - kLeft) / columns_;
    }

    std::string svg() const {
        std::string text = "<svg viewBox=\"0 0 " + number(kWidth) + " " + number(kHeight) +
                           "\" role=\"img\" aria-label=\"Reports a day by cause, " + dateText(first_) +
                           " to " + dateText(last_) + "\">\n" + axis();
        for (const auto& [day, counts] : summary_.days()) {
            if (day >= first_) {
                text += column(day, columnOf(counts));
            }
        }
        return text + dates() + "</svg>\n";
    }

private:
    static std::uint64_t totalOf(const Column& column) {
        std::uint64_t total = 0;
        for (const std::uint64_t count : column) {
            total += count;
        }
        return total;
    }

    Column columnOf(const ReportSummary::CountsByCause& counts) const {
        Column column{};
        for (const auto& [cause, count] : counts) {
            const auto rank = std::ranges::find(causes_, cause, &CauseCount::cause) - causes_.begin();
            column.at(std::min(static_cast<std::size_t>(rank), kColouredCauses)) += count;
        }
        return column;
    }

    double leftOf(Day day) const { return kLeft + step_ * static_cast<double>((day - first_).count()); }

    double heightOf(std::uint64_t count) const {
        return kPlotHeight * static_cast<double>(count) / static_cast<double>(highest_);
    }

    std::string axis() const {
        std::string text;
        for (const std::uint64_t value : {std::uint64_t{0}, highest_ / 2, highest_}) {
            const std::string y = number(kTop + kPlotHeight - heightOf(value));
            text += "<line class=\"grid\" x1=\"" + number(kLeft) + "\" x2=\"" + number(kWidth) + "\" y1=\"" +
                    y + "\" y2=\"" + y + "\"/><text class=\"number\" x=\"" + number(kLeft - 8) + "\" y=\"" +
                    y + "\" dy=\"4\">" + std::to_string(value) + "</text>\n";
        }
        return text;
    }

    std::string column(Day day, const Column& counts) const {
        const double width = std::min(step_ * 0.8, kWidestColumn);
        const double left = leftOf(day) + (step_ - width) / 2;
        double top = kTop + kPlotHeight;
        std::string text;
        for (std::size_t rank = 0; rank < counts.size(); ++rank) {
            if (counts.at(rank) == 0) {
                continue;
            }
            const double height = heightOf(counts.at(rank));
            top -= height;
            text += "<rect class=\"c" + std::to_string(rank) + "\" x=\"" + number(left) + "\" y=\"" +
                    number(top) + "\" width=\"" + number(width) + "\" height=\"" + number(height) +
                    "\"><title>" + dateText(day) + ": " + std::to_string(counts.at(rank)) + " " +
                    nameOfRank(rank) + "</title></rect>\n";
        }
        return text;
    }

    std::string nameOfRank(std::size_t rank) const {
        return rank < kColouredCauses ? std::string(causes_.at(rank).cause->id) : "other causes";
    }

    /// The first and the last day at the chart's edges, and one in the middle where there is room.
    std::string dates() const {
        if (columns_ == 1) {
            return date(first_, "middle", leftOf(first_) + step_ / 2);
        }
        const Day middle = first_ + std::chrono::days(columns_ / 2);
        const bool hasRoom = columns_ >= 5;
        return date(first_, "start", kLeft) +
               (hasRoom ? date(middle, "middle", leftOf(middle) + step_ / 2) : "") +
               date(last_, "end", kWidth);
    }

    static std::string date(Day day, const std::string& anchor, double x) {
        return "<text class=\"date\" text-anchor=\"" + anchor + "\" x=\"" + number(x) + "\" y=\"" +
               number(kHeight - 8) + "\">" + dateText(day) + "</text>\n";
    }

    const ReportSummary& summary_;
    std::vector<CauseCount> causes_;
    Day first_;
    Day last_;
    int columns_ = 0;
    std::uint64_t highest_ = 1;
    double step_ = 0;
};

} // namespace

std::string dayChart(const ReportSummary& summary) {
    return summary.days().empty() ? "" : Chart(summary).svg();
}

} // namespace orvane::tools
