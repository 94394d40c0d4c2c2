#include "tools/Verifier.h"

#include "config/Deployment.h"
#include "platform/BoundedRequest.h"
#include "platform/Utf8.h"
#include "tools/DescriptionChecks.h"
#include "tools/FetchedFile.h"
#include "tools/ServingChecks.h"
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

/// The answer to a second request, of which more is kept than bootstrappers look at.
std::optional<HttpAnswer> probed(Verification& verification, const std::string& check,
                                 const std::string& url) {
    try {
        return probe(url);
    } catch (const platform::Error& error) {
        add(verification, check, Verdict::warning,
            "a second request failed: " + error.localizedDescription());
        return std::nullopt;
    }
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
    const auto answer = probed(verification, "description-status", verification.url);
    const std::string answered = answer ? " (" + describeUnexpected(*answer) + ")" : "";
    if (!isValidUtf8(textOf(body))) {
        add(verification, "description", Verdict::failed,
            "it is not valid UTF-8: bootstrappers stop" + answered);
        return;
    }
    try {
        verification.description = decodeFileDownloadInfo(body);
    } catch (const platform::Error& error) {
        add(verification, "description", Verdict::failed, error.localizedDescription() + answered);
        return;
    }
    add(verification, "description", Verdict::good,
        "fetched and read, " + std::to_string(body.size()) + " bytes");
    if (answer) {
        append(verification, checkDescriptionServing(*answer, std::chrono::system_clock::now()));
    }
}

void checkWhatIsDescribed(Verification& verification, const VerifyOptions& options,
                          const ProgressHandler& progress) {
    const FileDownloadInfo& info = *verification.description;
    append(verification, checkDescription(info));
    if (verification.hasFailed()) {
        return;
    }
    const WorkFolder folder;
    const std::filesystem::path file = folder.path() / "transferred";
    const std::string url = transferredUrl(info);
    if (const auto error = fetchFile(url, file, progress)) {
        verification.fetched = false;
        add(verification, "transferred", Verdict::failed, error->localizedDescription());
        return;
    }
    report(progress, {.what = "checking what was fetched"});
    append(verification, checkTransferred(info, file, folder.path(), options.system));
    if (const auto answer = probed(verification, "engine-status", url)) {
        if (verification.hasFailed()) {
            add(verification, "engine-status", Verdict::warning, describeUnexpected(*answer));
        } else {
            append(verification, checkEngineServing(*answer, info.Version, std::chrono::system_clock::now()));
        }
    }
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
        report(progress, {.what = "fetching " + options.url});
        fetchDescription(verification);
        if (verification.description) {
            checkWhatIsDescribed(verification, options, progress);
        }
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    }
    answerFor(verification, options.bootstrappers);
    return verification;
}

Verification verifyCandidate(const FileDownloadInfo& description, const VerifyOptions& options,
                             const ProgressHandler& progress) {
    Verification verification;
    verification.url = transferredUrl(description);
    verification.description = description;
    try {
        checkWhatIsDescribed(verification, options, progress);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    }
    answerFor(verification, options.bootstrappers);
    return verification;
}

} // namespace orvane::tools
