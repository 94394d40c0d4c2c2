#include "tools/CommandLine.h"
#include "tools/EngineProbe.h"
#include "tools/FolderOptions.h"
#include "tools/PublishOptions.h"
#include "tools/Reports.h"
#include "tools/ToolError.h"
#include "tools/TrustedAuthorities.h"

#include <cstdlib>
#include <iostream>
#include <map>

namespace {

using namespace orvane::tools;

/// Shows progress to a person who is there to see it.
class TerminalProgress {
public:
    ProgressHandler handler() {
        if (!standardErrorIsATerminal()) {
            return {};
        }
        return [this](const Progress& progress) { line_.show(progress); };
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

Verification verifyCandidateWithProgress(const orvane::FileDownloadInfo& description,
                                         const VerifyOptions& options) {
    TerminalProgress progress;
    return verifyCandidate(description, options, progress.handler());
}

int statusOf(const Verification& verification) {
    if (!verification.fetched) {
        return static_cast<int>(ExitStatus::unavailable);
    }
    return verification.isAccepted() ? 0 : static_cast<int>(ExitStatus::badData);
}

int runPublish(const Arguments& arguments) {
    PublishOptions options = parsePublishOptions(arguments);
    options.version = checkedEngineVersion(options);
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
    return statusOf(verification);
}

int runSwitch(const Arguments& arguments) {
    const SwitchOptions options = parseSwitchOptions(arguments);
    const PublicationFolder folder(options.folder);
    if (options.version.empty()) {
        folder.endStaging();
        return 0;
    }
    trustAuthoritiesIn(options.verification.authority);
    const PublishedVersion version = folder.version(options.version);
    const Verification verification = verifyCandidateWithProgress(version.description, options.verification);
    std::cout << (options.json ? verificationJson(verification) : verificationText(verification));
    if (!verification.fetched || !verification.isAccepted()) {
        throw ToolError(static_cast<ExitStatus>(statusOf(verification)),
                        "nothing was switched: users would not get version " + options.version);
    }
    folder.switchTo(options.channel, version);
    if (!options.json) {
        std::cout << "wrote " << folder.descriptionFile(options.channel).string() << "\n";
    }
    return 0;
}

int runList(const Arguments& arguments) {
    const ListOptions options = parseListOptions(arguments);
    const auto versions = PublicationFolder(options.folder).versions();
    std::cout << (options.json ? folderJson(versions) : folderText(versions));
    return 0;
}

int runPrune(const Arguments& arguments) {
    const PruneOptions options = parsePruneOptions(arguments);
    const PublicationFolder folder(options.folder);
    for (const PublishedVersion& version : prunable(folder.versions(), options.keep)) {
        if (!options.dryRun) {
            folder.remove(version);
        }
        std::cout << (options.dryRun ? "would remove " : "removed ") << version.description.Version << "\n";
    }
    return 0;
}

int run(const Arguments& all) {
    static const std::map<std::string, int (*)(const Arguments&)> commands{
        {"verify", &runVerify}, {"switch", &runSwitch}, {"list", &runList}, {"prune", &runPrune}};
    const auto command = all.empty() ? commands.end() : commands.find(all.front());
    return command == commands.end() ? runPublish(all) : command->second({all.begin() + 1, all.end()});
}

} // namespace

int main(int argumentCount, char** arguments) {
    // Destroys nothing, since a session's thread may still be closing its connections.
    std::_Exit(runTool("orvane-publish", argumentCount, arguments, run));
}
