#include "demo/RehearsalDeployment.h"

#include "platform/Url.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace orvane::demo {
namespace {

using nlohmann::json;

json documentIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) {
        throw RehearsalError("cannot read " + file.string());
    }
    json document = json::parse(stream, nullptr, false);
    if (!document.is_object()) {
        throw RehearsalError(file.string() + " is not a JSON object");
    }
    return document;
}

std::string textOf(const json& document, const std::string& key) {
    const auto found = document.find(key);
    if (found == document.end() || !found->is_string()) {
        throw RehearsalError("rehearsal.json needs the text \"" + key + "\"");
    }
    return found->get<std::string>();
}

std::chrono::seconds secondsOf(const json& document, const std::string& key, std::chrono::seconds otherwise) {
    const auto found = document.find(key);
    if (found == document.end()) {
        return otherwise;
    }
    if (!found->is_number_unsigned() || *found == 0) {
        throw RehearsalError("\"" + key + "\" in rehearsal.json must be a whole number of seconds from 1");
    }
    return std::chrono::seconds(found->get<std::uint32_t>());
}

void checkFolder(const std::filesystem::path& folder) {
    if (!folder.is_absolute() || !parsesAsUrl(folder.string())) {
        throw RehearsalError("the rehearsal's folder must be an absolute path without blanks, not \"" +
                             folder.string() + "\"");
    }
}

void checkKeys(const json& document) {
    for (const auto& [key, value] : document.items()) {
        if (key != "apiOrigin" && key != "certificateAuthority" && key != "fileDescriptionWaitSeconds" &&
            key != "downloadTimeoutSeconds" && key != "crashReportWaitSeconds") {
            throw RehearsalError("rehearsal.json has the unknown key \"" + key + "\"");
        }
    }
}

/// The product's request target, which a rehearsal only sends elsewhere.
std::string movedTo(const std::string& origin, const std::string& productUrl) {
    static constexpr std::string_view kScheme = "https://";
    return origin + productUrl.substr(productUrl.find('/', kScheme.size()));
}

} // namespace

Rehearsal readRehearsal(const std::filesystem::path& folder) {
    checkFolder(folder);
    const json document = documentIn(folder / "rehearsal.json");
    checkKeys(document);
    const std::string origin = textOf(document, "apiOrigin");
    if (!origin.starts_with("https://") || origin.ends_with("/") || !parsesAsUrl(origin)) {
        throw RehearsalError(R"("apiOrigin" must be like https://localhost:8443, not ")" + origin + "\"");
    }

    Deployment deployment = productDeployment();
    deployment.engineRoot = folder / "opt";
    deployment.logRoot = folder / "Library" / "Kestrix";
    deployment.fileDescriptionUrl = movedTo(origin, deployment.fileDescriptionUrl);
    deployment.crashReportUrl = movedTo(origin, deployment.crashReportUrl);
    deployment.fileDescriptionWait =
        secondsOf(document, "fileDescriptionWaitSeconds", deployment.fileDescriptionWait);
    deployment.downloadTimeout = secondsOf(document, "downloadTimeoutSeconds", deployment.downloadTimeout);
    deployment.crashReportWait = secondsOf(document, "crashReportWaitSeconds", deployment.crashReportWait);
    return {deployment, textOf(document, "certificateAuthority")};
}

} // namespace orvane::demo
