#include "tools/ServingChecks.h"

#include <array>
#include <charconv>
#include <ctime>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;
using Time = std::chrono::system_clock::time_point;

constexpr auto kShortValidity = std::chrono::days(14);
constexpr long kStatusOk = 200;
constexpr std::size_t kLongestLine = 120;

std::string dateOf(Time time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts)};
}

/// The host name of an HTTPS address, with its port.
std::string hostOf(const std::string& url) {
    const std::size_t start = url.find("//") + 2;
    return url.substr(start, url.find('/', start) - start);
}

Finding checkCertificate(const HttpAnswer& answer, const std::string& check, Time now) {
    if (!answer.certificateEnd) {
        return {check, Verdict::warning, "how long the certificate is valid cannot be read"};
    }
    const auto days = std::chrono::duration_cast<std::chrono::days>(*answer.certificateEnd - now).count();
    const std::string text = hostOf(answer.url) + ": valid for " + std::to_string(days) +
                             " more days, until " + dateOf(*answer.certificateEnd);
    if (*answer.certificateEnd - now < kShortValidity) {
        return {check, Verdict::warning,
                text + "; renew it now: bootstrappers reject an expired certificate"};
    }
    return {check, Verdict::good, text};
}

Finding checkStatus(const HttpAnswer& answer, const std::string& check) {
    if (answer.status == kStatusOk) {
        return {check, Verdict::good, "HTTP status 200"};
    }
    return {check, Verdict::warning,
            "HTTP status " + std::to_string(answer.status) +
                " instead of 200: bootstrappers ignore it, but proxies and delivery "
                "networks may not"};
}

bool has(const std::string& cacheControl, const std::string& directive) {
    return cacheControl.find(directive) != std::string::npos;
}

/// Seconds of "max-age"; -1 without it.
long maxAge(const std::string& cacheControl) {
    constexpr std::string_view kName = "max-age=";
    const std::size_t position = cacheControl.find(kName);
    long seconds = -1;
    if (position != std::string::npos) {
        const char* begin = cacheControl.data() + position + kName.size();
        std::from_chars(begin, cacheControl.data() + cacheControl.size(), seconds);
    }
    return seconds;
}

Finding checkDescriptionCache(const HttpAnswer& answer) {
    const std::string cache = answer.header("cache-control").value_or("");
    if (has(cache, "no-store")) {
        return {"description-cache", Verdict::good, "no-store: a delivery network passes every request on"};
    }
    const std::string found = cache.empty() ? "no Cache-Control header" : "Cache-Control: " + cache;
    return {"description-cache", Verdict::warning,
            found + "; a delivery network may answer with an old description; serve it with "
                    "\"Cache-Control: no-store\""};
}

Finding checkEngineCache(const HttpAnswer& answer, const std::string& version) {
    const std::string cache = answer.header("cache-control").value_or("");
    const auto warning = [](const std::string& text) {
        return Finding{"engine-cache", Verdict::warning, text};
    };
    if (has(cache, "no-store") || has(cache, "private") || has(cache, "no-cache")) {
        return warning("Cache-Control: " + cache +
                       "; a delivery network asks your server for every installation");
    }
    if (answer.url.find("/" + version + "/") == std::string::npos) {
        return warning(
            "the address does not contain the version: a delivery network may answer with the file of "
            "another version");
    }
    if (maxAge(cache) <= 0) {
        return warning((cache.empty() ? "no Cache-Control header" : "Cache-Control: " + cache) +
                       "; each delivery network decides by itself; serve it with \"Cache-Control: public, "
                       "max-age=31536000, immutable\"");
    }
    return {"engine-cache", Verdict::good,
            "a delivery network may keep it for " + std::to_string(maxAge(cache)) + " s" +
                (has(cache, "immutable") ? " and never asks whether it has changed" : "")};
}

Finding checkLength(const HttpAnswer& answer) {
    if (answer.header("content-length") && !answer.header("content-encoding")) {
        return {"engine-length", Verdict::good, "announced, so the progress bar moves"};
    }
    return {"engine-length", Verdict::warning,
            "no Content-Length, or a coded body: the progress bar cannot show how much is left"};
}

} // namespace

Findings checkDescriptionServing(const HttpAnswer& answer, Time now) {
    return {checkStatus(answer, "description-status"),
            checkCertificate(answer, "description-certificate", now), checkDescriptionCache(answer)};
}

Findings checkEngineServing(const HttpAnswer& answer, const std::string& version, Time now) {
    return {checkStatus(answer, "engine-status"), checkCertificate(answer, "engine-certificate", now),
            checkEngineCache(answer, version), checkLength(answer)};
}

std::string describeUnexpected(const HttpAnswer& answer) {
    std::string line = answer.beginning.substr(0, answer.beginning.find_first_of("\r\n"));
    if (line.size() > kLongestLine) {
        line = line.substr(0, kLongestLine) + "…";
    }
    for (char& character : line) {
        const bool isControl = static_cast<unsigned char>(character) < 0x20 || character == '\x7F';
        character = isControl ? '?' : character;
    }
    return "HTTP status " + std::to_string(answer.status) + ", " +
           (answer.beginning.empty() ? "an empty body" : "first line: " + line);
}

} // namespace orvane::tools
