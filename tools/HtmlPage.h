#pragma once

#include "tools/ReportSummary.h"

#include <string>

namespace orvane::tools {

/// One page that shows a summary without a network: causes by share, a chart of causes by day, and for each
/// cause its remedy and the end of an example log. In light and dark, as the reader's system wants it.
///
/// Logs are escaped, and the page forbids browsers to load or run anything.
std::string htmlPage(const ReportSummary& summary);

} // namespace orvane::tools
