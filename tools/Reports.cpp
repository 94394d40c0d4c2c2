#include "tools/Reports.h"

#include "tools/DescriptionChecks.h"
#include "tools/DescriptionJson.h"

namespace orvane::tools {
namespace {

using Json = nlohmann::ordered_json;

/// As a column for people.
std::string columnOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::good:
        return "ok       ";
    case Verdict::warning:
        return "warning  ";
    case Verdict::failed:
        return "failed   ";
    }
    return {};
}

std::string wordFor(Verdict verdict) {
    const std::string column = columnOf(verdict);
    return column.substr(0, column.find(' '));
}

/// Foreign bytes in a vendor's document must not keep a program from reading the report.
std::string printed(const Json& document) {
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string answerText(const Verification& verification, const Verification::Answer& answer) {
    if (answer.accepts) {
        return "bootstrapper " + answer.bootstrapper + ": accepts it\n";
    }
    const std::string why = verification.hasFailed()
                                ? ""
                                : ", its major version is another: an installation ends with the advice to "
                                  "get a newer installer, an uninstallation uses the engine on the machine";
    return "bootstrapper " + answer.bootstrapper + ": does not accept it" + why + "\n";
}

} // namespace

std::string publicationText(const Publication& publication, bool dryRun) {
    const FileDownloadInfo& description = publication.description;
    const std::string wrote = !publication.isNew ? "unchanged " : dryRun ? "would write " : "wrote ";
    return "version " + description.Version + " at " + transferredUrl(description) + "\nengine digest (" +
           description.ChecksumAlgorithm + ")       " + description.Checksum + "\ntransferred digest (" +
           description.ChecksumAlgorithm + ")  " + description.EncryptedFileChecksum + "\n" + wrote +
           publication.engineFile.string() + "\n" + wrote + publication.descriptionFile.string() + "\n";
}

std::string publicationJson(const Publication& publication, bool dryRun) {
    return printed({{"dryRun", dryRun},
                    {"new", publication.isNew},
                    {"engineFile", publication.engineFile.string()},
                    {"descriptionFile", publication.descriptionFile.string()},
                    {"description", jsonOf(publication.description)}});
}

std::string folderText(const std::vector<PublishedVersion>& versions) {
    std::string text;
    for (const PublishedVersion& version : versions) {
        const FileDownloadInfo& info = version.description;
        text += info.Version + "  " + readableSize(version.size) + "  " + info.ChecksumAlgorithm + " " +
                transferredDigest(info) + (version.isCurrent ? "  current" : "") +
                (version.isStaged ? "  staged" : "") + "\n";
    }
    return text.empty() ? "no versions are published\n" : text;
}

std::string folderJson(const std::vector<PublishedVersion>& versions) {
    Json list = Json::array();
    for (const PublishedVersion& version : versions) {
        list.push_back({{"version", version.description.Version},
                        {"engineFile", version.engineFile.string()},
                        {"bytes", version.size},
                        {"current", version.isCurrent},
                        {"staged", version.isStaged},
                        {"description", jsonOf(version.description)}});
    }
    return printed({{"versions", list}});
}

std::string verificationText(const Verification& verification) {
    std::string text = verification.url + "\n";
    for (const Finding& finding : verification.findings) {
        text += columnOf(finding.verdict) + finding.check + ": " + finding.text + "\n";
    }
    for (const Verification::Answer& answer : verification.answers) {
        text += answerText(verification, answer);
    }
    return text;
}

std::string verificationJson(const Verification& verification) {
    Json findings = Json::array();
    for (const Finding& finding : verification.findings) {
        findings.push_back(
            {{"check", finding.check}, {"verdict", wordFor(finding.verdict)}, {"text", finding.text}});
    }
    Json answers = Json::array();
    for (const Verification::Answer& answer : verification.answers) {
        answers.push_back({{"version", answer.bootstrapper}, {"accepts", answer.accepts}});
    }
    Json major = nullptr;
    if (verification.description && !verification.hasFailed()) {
        major = acceptedMajorVersion(*verification.description).value();
    }
    return printed({{"url", verification.url},
                    {"accepted", verification.isAccepted()},
                    {"acceptedMajorVersion", major},
                    {"fetched", verification.fetched},
                    {"findings", findings},
                    {"bootstrappers", answers},
                    {"description",
                     verification.description ? Json(jsonOf(*verification.description)) : Json(nullptr)}});
}

} // namespace orvane::tools
