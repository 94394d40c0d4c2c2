#pragma once

#include "config/Deployment.h"
#include "platform/Files.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orvane {

/// The log of one run: a new file in the given folder, and every line on standard output as well. It also
/// uploads itself as the crash report.
///
/// Opened once by one thread; after that every operation may come from any thread. A log that could not be
/// opened goes on as standard output alone.
class Logger {
public:
    /// `deployment` says where crash reports go; it must outlive the logger.
    explicit Logger(const Deployment& deployment);

    /// Creates the folder if needed and the run's file in it, named after the local time to the second; a
    /// file of the same name is replaced. Never throws: a failure is printed.
    void OpenProgramLog(const std::filesystem::path& logFolderPath);

    /// Appends "HH:mm:ss: ", `text` and CR LF in one write, so the line is in the file, whole, when the call
    /// returns.
    void WriteProgramLog(const std::string& text);

    /// Posts the log as it is now to the vendor, waiting at most the deployment's limit; a failure becomes a
    /// log line. Without an open log it does nothing. Not on a thread that must not block.
    void SendCrashToOrvaneServer();

    /// The run's time stamp, local time as "yyyy-MM-dd HH-mm-ss"; empty until the log was opened.
    const std::string& GetCurrentTimeString() const { return currentTimeString_; }

private:
    void makeCurrentTimeString();
    void sendPayloadToOrvaneServer(std::string payload);

    const Deployment& deployment_;
    std::optional<platform::FileHandle> logFile_;
    std::filesystem::path programLogFilePath_;
    std::string currentTimeString_;
};

/// A line for the log of a run that has one; none: nothing happens.
void writeProgramLog(const std::shared_ptr<Logger>& logger, const std::string& text);

} // namespace orvane
