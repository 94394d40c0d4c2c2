#include "tools/Verifier.h"

#include "config/Deployment.h"
#include "platform/BoundedRequest.h"
#include "platform/Utf8.h"
#include "tools/DescriptionChecks.h"
#include "tools/FetchedFile.h"
#include "tools/ToolError.h"
#include "tools/WorkFolder.h"
#include "verify/Versions.h"

#include <algorithm>

namespace orvane::tools {
namespace {

void add(Verification& verification, const std::string& check, Verdict verdict, const std::string& text) {
    verification.findings.push_back({check, verdict, text});
}

void append(Verification& verification, const Findings& findings) {
    verification.findings.insert(verification.findings.end(), findings.begin(), findings.end());
}

void fetchDescription(Verification& verification) {
    const auto result =
        platform::performRequest({.url = verification.url}, productDeployment().fileDescriptionWait);
    if (const platform::Error* const error = errorOf(result)) {
        verification.fetched = false;
        add(verification, "description", Verdict::failed, error->localizedDescription());
        return;
    }
    const auto& body = std::get<Bytes>(result);
    if (!isValidUtf8(textOf(body))) {
        add(verification, "description", Verdict::failed, "it is not valid UTF-8: bootstrappers stop");
        return;
    }
    try {
        verification.description = decodeFileDownloadInfo(body);
        add(verification, "description", Verdict::good,
            "fetched and read, " + std::to_string(body.size()) + " bytes");
    } catch (const platform::Error& error) {
        add(verification, "description", Verdict::failed, error.localizedDescription());
    }
}

void checkWhatIsDescribed(Verification& verification, const ProgressHandler& progress) {
    const FileDownloadInfo& info = *verification.description;
    append(verification, checkDescription(info));
    if (verification.hasFailed()) {
        return;
    }
    const WorkFolder folder;
    const std::filesystem::path file = folder.path() / "transferred";
    if (const auto error = fetchFile(transferredUrl(info), file, progress)) {
        verification.fetched = false;
        add(verification, "transferred", Verdict::failed, error->localizedDescription());
        return;
    }
    tell(progress, "checking what was fetched");
    append(verification, checkTransferred(info, file, folder.path()));
}

void answerFor(Verification& verification, const std::vector<std::string>& bootstrappers) {
    const auto major =
        verification.hasFailed() ? std::nullopt : acceptedMajorVersion(verification.description.value());
    for (const std::string& version : bootstrappers) {
        verification.answers.push_back({version, major && majorVersion(version) == *major});
    }
}

} // namespace

bool Verification::hasFailed() const {
    return std::ranges::any_of(findings,
                               [](const Finding& finding) { return finding.verdict == Verdict::failed; });
}

bool Verification::isAccepted() const {
    return !hasFailed() && std::ranges::all_of(answers, [](const Answer& answer) { return answer.accepts; });
}

Verification verify(const VerifyOptions& options, const ProgressHandler& progress) {
    Verification verification;
    verification.url = options.url;
    try {
        tell(progress, "fetching " + options.url);
        fetchDescription(verification);
        if (verification.description) {
            checkWhatIsDescribed(verification, progress);
        }
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    }
    answerFor(verification, options.bootstrappers);
    return verification;
}

} // namespace orvane::tools
