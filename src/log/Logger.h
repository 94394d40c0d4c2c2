#pragma once

#include "config/Deployment.h"
#include "platform/Files.h"
#include "platform/ProgrammingError.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace orvane {

/// The log of one run: a new file in the given folder, and every line on standard output as well. It also
/// uploads itself as the crash report.
///
/// Any thread, for every operation, also while the log is being opened: until it is open, and if it cannot be
/// opened, lines go to standard output alone. The reason of an abort becomes the log's last line.
class Logger {
public:
    /// `deployment` says where crash reports go; it must outlive the logger.
    explicit Logger(const Deployment& deployment);

    /// Takes the local time as the run's time stamp. `OpenProgramLog` does this itself.
    void makeCurrentTimeString();

    /// Creates the folder if needed and the run's file in it, named after the time stamp. Whatever has that
    /// name already is removed first, a folder with its contents; a link is removed, not followed. If another
    /// run creates the file at the same moment, both write into it. Never throws: a failure is printed.
    void OpenProgramLog(const std::filesystem::path& logFolderPath);

    /// Appends "HH:mm:ss: ", `text` and CR LF in one write, so the line is in the file, whole, when the call
    /// returns.
    void WriteProgramLog(const std::string& text);

    /// Closes the file. Later lines go to standard output alone, and no crash report is sent.
    void CloseProgramLog();

    /// The run's time stamp as "yyyy-MM-dd HH-mm-ss"; empty before the log is opened.
    std::string GetCurrentTimeString() const;

    /// Posts the log as it is now to the vendor, waiting at most the deployment's limit; a failure becomes a
    /// log line. Without an open log it does nothing. Not on a thread that must not block. Takes 4/3 of the
    /// log's size in memory.
    void SendCrashToOrvaneServer();

private:
    void append(const std::string& line);
    void recordAbort(const std::string& reason);
    std::optional<std::filesystem::path> openLogPath() const;
    void sendPayloadToOrvaneServer(std::string payload);

    const Deployment& deployment_;
    mutable std::mutex mutex_; ///< guards the three fields that follow
    std::optional<platform::FileHandle> logFile_;
    std::filesystem::path programLogFilePath_;
    std::string currentTimeString_;

    /// Last, so that it is gone before what it uses.
    const AbortRecorder abortRecorder_{[this](std::string_view reason) { recordAbort(std::string(reason)); }};
};

/// A line for the log of a run that has one; none: nothing happens.
void writeProgramLog(const std::shared_ptr<Logger>& logger, const std::string& text);

} // namespace orvane
