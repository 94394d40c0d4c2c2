#include "tools/ReportReader.h"

#include "tools/ReportStream.h"

#include <fstream>
#include <system_error>
#include <utility>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// Beyond any report: the largest answer that a bootstrapper logs has 64 MiB.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{128} << 20U;

std::string contentOf(const fs::path& file, std::uintmax_t size) {
    std::string content(size, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(content.data(), static_cast<std::streamsize>(size));
    if (!stream.is_open() || stream.bad()) {
        throw UnusableReport(Unusable::unreadable, "it cannot be read");
    }
    content.resize(static_cast<std::size_t>(stream.gcount())); // the file may have shrunk since
    return content;
}

ReceiptTime receiptTime(fs::file_time_type time) {
    return std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::to_sys(time));
}

} // namespace

ReportReader::ReportReader(std::function<void(FoundLog)> onLog,
                           std::function<void(const SkippedFile&)> onSkipped)
    : onLog_(std::move(onLog)), onSkipped_(std::move(onSkipped)) {}

void ReportReader::read(const fs::path& path) {
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (!fs::exists(status)) {
        skip(path, Unusable::unreadable, failure ? failure.message() : "it does not exist");
    } else if (fs::is_directory(status)) {
        readFolder(path);
    } else if (fs::is_regular_file(status)) {
        readFile(path);
    } else if (std::ifstream stream(path, std::ios::binary); stream) {
        readStream(stream, path.string());
    } else {
        skip(path, Unusable::unreadable, "it cannot be read");
    }
}

void ReportReader::readFolder(const fs::path& folder) {
    std::error_code failure;
    fs::directory_iterator entry(folder, failure);
    while (!failure && entry != fs::directory_iterator()) {
        readEntry(*entry);
        entry.increment(failure);
    }
    if (failure) {
        skip(folder, Unusable::unreadable, failure.message());
    }
}

void ReportReader::readEntry(const fs::directory_entry& entry) {
    std::error_code failure;
    const fs::file_status status = entry.symlink_status(failure);
    const fs::path& path = entry.path();
    if (fs::is_directory(status)) {
        readFolder(path);
    } else if (!fs::is_regular_file(status)) {
        // A link could lead anywhere, and a pipe would be waited for.
        skip(path, failure ? Unusable::unreadable : Unusable::foreign,
             failure ? failure.message() : "it is not a regular file");
    } else if (path.extension() != ".log" ||
               !fs::exists(fs::path(path).replace_extension(".json"), failure)) {
        readFile(path);
    }
}

void ReportReader::readFile(const fs::path& file) {
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(file, failure);
    const fs::file_time_type time = failure ? fs::file_time_type() : fs::last_write_time(file, failure);
    if (failure) {
        skip(file, Unusable::unreadable, failure.message());
    } else if (size > kLargestFile) {
        skip(file, Unusable::foreign, "it is larger than 128 MiB");
    } else {
        try {
            deliver(file.string(), receiptTime(time), contentOf(file, size));
        } catch (const UnusableReport& error) {
            skip(file, error.kind(), error.what());
        }
    }
}

void ReportReader::readStream(std::istream& stream, const std::string& name) {
    ReportStream bodies(stream, kLargestFile);
    std::size_t number = 0;
    while (auto body = bodies.next()) {
        const std::string numbered = name + ":" + std::to_string(++number);
        try {
            deliver(numbered, std::nullopt, std::move(*body));
        } catch (const UnusableReport& error) {
            skip(numbered, error.kind(), error.what());
        }
    }
    if (number == 0) {
        skip(name, Unusable::damaged, "it is empty");
    }
}

void ReportReader::deliver(std::string name, std::optional<ReceiptTime> received, std::string content) {
    const bool isLog = looksLikeLog(content);
    std::string text = isLog ? std::move(content) : logInReport(content);
    onLog_({.name = std::move(name),
            .received = received,
            .source = isLog ? LogSource::file : LogSource::crashReport,
            .text = std::move(text)});
}

void ReportReader::skip(const fs::path& path, Unusable kind, const std::string& reason) {
    onSkipped_({.name = path.string(), .kind = kind, .reason = reason});
}

} // namespace orvane::tools
