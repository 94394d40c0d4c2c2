#pragma once

#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>

namespace orvane::demo {

class CrashReportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Keeps crash reports in a folder: each as it came in NNN.json, its log readable in NNN.log. Any thread.
class CrashReportArchive {
public:
    /// Makes the folder.
    explicit CrashReportArchive(std::filesystem::path folder);

    /// Files a report under the next number, counted from 001. One that is not a JSON object of exactly the
    /// texts "Product", "Report", "OS", "SoftwareName" and "SoftwareVersion" is not kept: throws
    /// `CrashReportError`.
    void add(const std::string& report);

private:
    std::filesystem::path folder_;
    std::mutex mutex_;
    int count_ = 0;
};

} // namespace orvane::demo
