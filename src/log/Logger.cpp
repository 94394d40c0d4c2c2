#include "log/Logger.h"

#include "log/CrashReport.h"
#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/StandardOutput.h"

#include <array>
#include <ctime>
#include <utility>

namespace orvane {

namespace {

/// The local time now, in the form that strftime(3) understands.
std::string nowFormatted(const char* format) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), format, &local);
    return {text.data(), length};
}

std::string logLine(const std::string& text) { return nowFormatted("%H:%M:%S: ") + text + "\r\n"; }

/// Makes way for a new log. Nothing there is no error: another run may have removed it at the same moment.
platform::FileHandle createdLog(const std::filesystem::path& folder, const std::filesystem::path& file) {
    platform::createDirectoryWithIntermediates(folder);
    platform::removeItem(file);
    return platform::FileHandle::forAppending(file);
}

} // namespace

Logger::Logger(const Deployment& deployment) : deployment_(deployment) {}

void Logger::makeCurrentTimeString() {
    std::string now = nowFormatted("%Y-%m-%d %H-%M-%S");
    const std::lock_guard lock(mutex_);
    currentTimeString_ = std::move(now);
}

void Logger::OpenProgramLog(const std::filesystem::path& logFolderPath) {
    makeCurrentTimeString();
    const auto path = logFolderPath / ("Install " + GetCurrentTimeString() + " (bootstrap).log");
    try {
        std::optional<platform::FileHandle> file(createdLog(logFolderPath, path));
        const std::lock_guard lock(mutex_);
        programLogFilePath_ = path;
        logFile_ = std::move(file);
    } catch (const platform::Error& error) {
        platform::printLine("Error initializing logger: " + error.localizedDescription());
    }
}

void Logger::WriteProgramLog(const std::string& text) {
    platform::printLine(text);
    const std::string line = logLine(text);
    const std::lock_guard lock(mutex_);
    append(line);
}

/// The log is closed in the same breath, so that no other thread's line follows. The file comes first:
/// standard output may keep its writer waiting.
void Logger::recordAbort(const std::string& reason) {
    const std::string line = logLine(reason);
    {
        const std::lock_guard lock(mutex_);
        append(line);
        logFile_.reset();
    }
    platform::printLine(reason);
}

/// The mutex is held by the caller.
void Logger::append(const std::string& line) {
    if (!logFile_) {
        return;
    }
    try {
        logFile_->write(bytesOf(line));
    } catch (const platform::Error&) {
        // The line is on standard output. A full disk must not end an installation for want of its log.
    }
}

void Logger::CloseProgramLog() {
    const std::lock_guard lock(mutex_);
    logFile_.reset();
}

std::string Logger::GetCurrentTimeString() const {
    const std::lock_guard lock(mutex_);
    return currentTimeString_;
}

std::optional<std::filesystem::path> Logger::openLogPath() const {
    const std::lock_guard lock(mutex_);
    return logFile_ ? std::optional(programLogFilePath_) : std::nullopt;
}

void Logger::SendCrashToOrvaneServer() {
    const auto path = openLogPath();
    if (!path) {
        return;
    }
    try {
        sendPayloadToOrvaneServer(crashReportPayload(*path));
    } catch (const platform::Error& error) {
        WriteProgramLog("cannot send crash report to orvane server: " + error.localizedDescription());
    }
}

void Logger::sendPayloadToOrvaneServer(std::string payload) {
    postCrashReport(std::move(payload), deployment_);
}

void writeProgramLog(const std::shared_ptr<Logger>& logger, const std::string& text) {
    if (logger) {
        logger->WriteProgramLog(text);
    }
}

} // namespace orvane
