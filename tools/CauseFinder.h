#pragma once

#include "tools/CauseCatalogue.h"
#include "tools/RunLog.h"

#include <optional>
#include <string_view>

namespace orvane::tools {

/// How a log reached us. A report is sent after a fatal error only; a log may be of any run.
enum class LogSource { crashReport, file };

struct Diagnosis {
    const Cause* cause; ///< never null; an entry of the catalogue
    LogLine line;       ///< that shows the cause; points into the log, empty if no single line does
};

/// Finds the cause of a run's end by the log's fixed texts, and by names and codes of errors: descriptions
/// may be in the user's language.
Diagnosis diagnose(const RunLog& log, LogSource source);

} // namespace orvane::tools
