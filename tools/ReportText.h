#pragma once

#include "tools/CauseFinder.h"
#include "tools/ReportReader.h"
#include "tools/ReportSummary.h"

#include <string>

namespace orvane::tools {

// What orvane-reports prints. Everything from a log is made printable first.

/// Causes with count, share, first and last time, remedy and example.
std::string summaryText(const ReportSummary& summary);

/// One log with its cause; the line that shows the cause is marked.
std::string logText(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis);

/// One JSON object on one line; null for what the log does not hold.
std::string logJson(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis);

/// The catalogue, for people or as the tables of docs/support.md.
std::string causesText();
std::string causesMarkdown();

/// "foreign", "damaged" or "unreadable".
std::string_view nameOf(Unusable kind);

} // namespace orvane::tools
