#include "log/Logger.h"

#include "log/CrashReport.h"
#include "platform/Bytes.h"
#include "platform/Error.h"

#include <array>
#include <cstdio>
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

} // namespace

Logger::Logger(const Deployment& deployment) : deployment_(deployment) {}

void Logger::OpenProgramLog(const std::filesystem::path& logFolderPath) {
    makeCurrentTimeString();
    programLogFilePath_ = logFolderPath / ("Install " + currentTimeString_ + " (bootstrap).log");
    try {
        platform::createDirectoryWithIntermediates(logFolderPath);
        if (platform::fileExists(programLogFilePath_)) {
            platform::removeFile(programLogFilePath_);
        }
        platform::writeNewFile(programLogFilePath_, {});
        logFile_ = platform::FileHandle::forAppending(programLogFilePath_);
    } catch (const platform::Error& error) {
        std::printf("Error initializing logger: %s\n", error.localizedDescription().c_str());
    }
}

void Logger::makeCurrentTimeString() { currentTimeString_ = nowFormatted("%Y-%m-%d %H-%M-%S"); }

void Logger::WriteProgramLog(const std::string& text) {
    const std::string printed = text + "\n";
    std::fwrite(printed.data(), 1, printed.size(), stdout);
    if (!logFile_) {
        return;
    }
    try {
        logFile_->write(bytesOf(nowFormatted("%H:%M:%S: ") + text + "\r\n"));
    } catch (const platform::Error&) {
        // The line is on standard output; a full disk must not end an installation for want of its log.
    }
}

void Logger::SendCrashToOrvaneServer() {
    if (!logFile_) {
        return;
    }
    try {
        sendPayloadToOrvaneServer(
            crashReportPayload(platform::FileHandle::forReading(programLogFilePath_).readToEnd()));
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
