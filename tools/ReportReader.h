#pragma once

#include "tools/CauseFinder.h"
#include "tools/CrashReportBody.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <istream>
#include <optional>
#include <string>

namespace orvane::tools {

using ReceiptTime = std::chrono::sys_seconds;

/// The log of one crash report, or a log that a user sent.
struct FoundLog {
    std::string name;                    ///< the file's path; for a stream, its name and the report's number
    std::optional<ReceiptTime> received; ///< when the file was last written; nothing for a stream
    LogSource source = LogSource::crashReport;
    std::string text;
};

/// What was found and cannot be used.
struct SkippedFile {
    std::string name;
    Unusable kind;
    std::string reason; ///< one line for a person
};

/// Reads crash reports as servers store them: one body a file, in folders, or one after another in a stream.
/// Files that begin as a log does are read as logs. Holds one report at a time, each of at most 128 MiB.
class ReportReader {
public:
    /// Both handlers are called on the caller's thread, in the order in which the folders list their files.
    ReportReader(std::function<void(FoundLog)> onLog, std::function<void(const SkippedFile&)> onSkipped);

    /// A file, a folder with all folders in it, or something to be read as a stream, such as a pipe. Links
    /// inside a folder are skipped. `NNN.log` beside `NNN.json` is the same report once more, and passed
    /// over.
    void read(const std::filesystem::path& path);

    /// Bodies one after another, with or without line breaks between them; or a single log.
    void readStream(std::istream& stream, const std::string& name);

private:
    void readFolder(const std::filesystem::path& folder);
    void readEntry(const std::filesystem::directory_entry& entry);
    void readFile(const std::filesystem::path& file);
    void deliver(std::string name, std::optional<ReceiptTime> received, std::string content);
    void skip(const std::filesystem::path& path, Unusable kind, const std::string& reason);

    std::function<void(FoundLog)> onLog_;
    std::function<void(const SkippedFile&)> onSkipped_;
};

} // namespace orvane::tools
