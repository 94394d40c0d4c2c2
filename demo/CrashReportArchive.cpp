#include "demo/CrashReportArchive.h"

#include "tools/Base64Decoder.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

namespace orvane::demo {
namespace {

std::string readableLog(const std::string& report) {
    const auto document = nlohmann::json::parse(report, nullptr, false);
    if (!document.is_object() || document.size() != 5) {
        throw CrashReportError("the report is not a JSON object with five keys");
    }
    for (const char* key : {"Product", "Report", "OS", "SoftwareName", "SoftwareVersion"}) {
        if (!document.contains(key) || !document[key].is_string()) {
            throw CrashReportError(std::string("the report lacks the text ") + key);
        }
    }
    auto log = tools::base64Decoded(document["Report"].get_ref<const std::string&>());
    if (!log) {
        throw CrashReportError("the report is not base64");
    }
    return std::move(*log);
}

void writeFile(const std::filesystem::path& file, const std::string& contents) {
    // A test that waits for the file must never find half of it.
    const std::filesystem::path partial = file.string() + ".partial";
    std::ofstream(partial, std::ios::binary) << contents;
    std::filesystem::rename(partial, file);
}

} // namespace

CrashReportArchive::CrashReportArchive(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
}

void CrashReportArchive::add(const std::string& report) {
    const std::string log = readableLog(report);
    const std::lock_guard lock(mutex_);
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "%03d", ++count_);
    writeFile(folder_ / (std::string(name.data()) + ".json"), report);
    writeFile(folder_ / (std::string(name.data()) + ".log"), log);
}

} // namespace orvane::demo
