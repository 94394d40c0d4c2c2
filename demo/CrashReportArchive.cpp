#include "demo/CrashReportArchive.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

namespace orvane::demo {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::uint32_t digitOf(char character) {
    const std::size_t digit = kAlphabet.find(character);
    if (digit == std::string_view::npos) {
        throw CrashReportError("the report is not base64");
    }
    return static_cast<std::uint32_t>(digit);
}

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
    return decodeBase64(document["Report"].get<std::string>());
}

void writeFile(const std::filesystem::path& file, const std::string& contents) {
    // A test that waits for the file must never find half of it.
    const std::filesystem::path partial = file.string() + ".partial";
    std::ofstream(partial, std::ios::binary) << contents;
    std::filesystem::rename(partial, file);
}

} // namespace

std::string decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        throw CrashReportError("the report is not base64: its length is no multiple of four");
    }
    std::string decoded;
    for (; !text.empty(); text.remove_prefix(4)) {
        const bool last = text.size() == 4;
        const std::size_t padding = !last || text[3] != '=' ? 0 : (text[2] == '=' ? 2 : 1);
        std::uint32_t group = 0;
        for (std::size_t index = 0; index < 4; ++index) {
            group = (group << 6U) | (index >= 4 - padding ? 0U : digitOf(text[index]));
        }
        for (std::size_t index = 0; index < 3 - padding; ++index) {
            decoded.push_back(static_cast<char>((group >> (16 - 8 * index)) & 0xFFU));
        }
    }
    return decoded;
}

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
