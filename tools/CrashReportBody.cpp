#include "tools/CrashReportBody.h"

#include "tools/Base64Decoder.h"

#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

using Json = nlohmann::json;

std::string textOfKey(const Json& document, const char* key) {
    const auto found = document.find(key);
    return found != document.end() && found->is_string() ? found->get<std::string>() : "";
}

} // namespace

std::string logInReport(std::string_view body) {
    const std::size_t start = body.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        throw UnusableReport(Unusable::damaged, "it is empty");
    }
    if (body[start] != '{') {
        throw UnusableReport(Unusable::foreign, "it is neither a crash report nor a log");
    }
    const Json document = Json::parse(body, nullptr, false);
    if (document.is_discarded()) {
        throw UnusableReport(Unusable::damaged, "it is not valid JSON; was it cut off?");
    }
    if (textOfKey(document, "Product") != "varlen" || textOfKey(document, "SoftwareName") != "bootstrapper") {
        throw UnusableReport(Unusable::foreign, "it is not a report of this product's bootstrapper");
    }
    const auto report = document.find("Report");
    if (report == document.end() || !report->is_string()) {
        throw UnusableReport(Unusable::damaged, "its Report is missing or not a text");
    }
    auto log = base64Decoded(report->get_ref<const std::string&>());
    if (!log) {
        throw UnusableReport(Unusable::damaged, "its Report is not base64");
    }
    return std::move(*log);
}

} // namespace orvane::tools
