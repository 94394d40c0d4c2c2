#pragma once

#include "tools/ReportSummary.h"

#include <string>

namespace orvane::tools {

/// The causes that have a colour of their own in the chart; all others share one more.
inline constexpr std::size_t kColouredCauses = 7;

/// A chart of the last 60 days with reports as inline SVG, a column a day, the most frequent causes at the
/// bottom. The colours are the classes c0 to c7 of the page. Empty where no time of receipt is known.
std::string dayChart(const ReportSummary& summary);

} // namespace orvane::tools
