#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tools {

/// One line of a log without its time. The text may hold line breaks.
using LogLine = std::string_view;

/// What one run of the bootstrapper logged, divided into lines.
///
/// A log is input from outside: nothing in it is trusted, and a log of any size gives a bounded number of
/// lines.
class RunLog {
public:
    explicit RunLog(std::string text);
    RunLog(const RunLog&) = delete; // the lines point into the text
    RunLog& operator=(const RunLog&) = delete;

    const std::string& text() const { return text_; }

    /// Of a log with more than 20,000 lines, the first and the last ones.
    const std::vector<LogLine>& lines() const { return lines_; }

    /// A line of this log with its time, if it has one.
    std::string_view withTime(LogLine line) const;

    /// Whether the last line lacks its end: there was no room left for it.
    bool isCutOff() const { return !text_.empty() && text_.back() != '\n'; }

    /// What follows `prefix` in the last line that begins with it.
    std::optional<std::string_view> lastAfter(std::string_view prefix) const;

private:
    void addLine(std::string_view line);

    std::string text_;
    std::vector<LogLine> lines_;
};

/// Whether a file begins as the bootstrapper's log does.
bool looksLikeLog(std::string_view text);

/// What the log of a run tells about the run. Nothing where the log does not hold it.
struct RunFacts {
    std::optional<std::string> mode;          ///< "install" or "uninstall"
    std::optional<std::string> language;      ///< of the window: "fr" or "de"
    std::optional<std::int64_t> restartStep;  ///< where the engine was last started; 0 for its first start
    std::optional<std::string> engineVersion; ///< of the engine that the run used or meant to install
    std::optional<std::string> bootstrapperMajorVersion;
};

RunFacts factsOf(const RunLog& log);

/// What a log shows of the description that the API host sent. Empty texts where it holds none.
struct LoggedDescription {
    std::string version;
    std::string checksum;
    std::string checksumAlgorithm;
    std::string encryptionAlgorithm;
};

std::optional<LoggedDescription> descriptionIn(const RunLog& log);

/// The two first components of versions that a run compared: its own and the described engine's.
struct MajorVersions {
    std::string_view bootstrapper;
    std::string_view engine;
};

std::optional<MajorVersions> majorVersionsIn(const RunLog& log);

} // namespace orvane::tools
