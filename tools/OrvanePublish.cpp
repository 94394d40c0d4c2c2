#include "tools/CommandLine.h"
#include "tools/PublishOptions.h"
#include "tools/Reports.h"
#include "tools/ToolError.h"
#include "tools/TrustedAuthorities.h"

#include <cstdlib>
#include <iostream>

namespace {

using namespace orvane::tools;

/// Shows progress to a person who is there to see it.
class TerminalProgress {
public:
    ProgressHandler handler() {
        if (!standardErrorIsATerminal()) {
            return {};
        }
        return [this](std::string_view what, std::optional<double> fraction) { line_.show(what, fraction); };
    }

private:
    ProgressLine line_{std::cerr};
};

Publication publishWithProgress(const PublishOptions& options) {
    TerminalProgress progress;
    return publish(options, progress.handler());
}

Verification verifyWithProgress(const VerifyOptions& options) {
    TerminalProgress progress;
    return verify(options, progress.handler());
}

int runPublish(const Arguments& arguments) {
    const PublishOptions options = parsePublishOptions(arguments);
    const Publication publication = publishWithProgress(options);
    std::cout << (options.json ? publicationJson(publication, options.dryRun)
                               : publicationText(publication, options.dryRun));
    return 0;
}

int runVerify(const Arguments& arguments) {
    const VerifyOptions options = parseVerifyOptions(arguments);
    trustAuthoritiesIn(options.authority);
    const Verification verification = verifyWithProgress(options);
    std::cout << (options.json ? verificationJson(verification) : verificationText(verification));
    if (!verification.fetched) {
        return static_cast<int>(ExitStatus::unavailable);
    }
    return verification.isAccepted() ? 0 : static_cast<int>(ExitStatus::badData);
}

int run(const Arguments& all) {
    const bool isVerify = !all.empty() && all.front() == "verify";
    return isVerify ? runVerify({all.begin() + 1, all.end()}) : runPublish(all);
}

} // namespace

int main(int argumentCount, char** arguments) {
    // Destroys nothing, since a session's thread may still be closing its connections.
    std::_Exit(runTool("orvane-publish", argumentCount, arguments, run));
}
