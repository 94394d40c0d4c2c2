#include "tools/VerifyOptions.h"

#include "config/Deployment.h"
#include "platform/Bundle.h"
#include "tools/OptionChecks.h"
#include "tools/ProgramFormat.h"
#include "verify/Versions.h"

#include <charconv>

namespace orvane::tools {
namespace {

constexpr char kDescription[] =
    "Fetches a published description and the file that it describes, checks both as a bootstrapper would, "
    "and\n"
    "prints which bootstrappers accept them. Also checks how long the servers' certificates are valid and "
    "what\n"
    "a delivery network would cache. Writes only into a folder for temporary files, which it removes.";

constexpr char kStatuses[] =
    "0 all of them accept it, 64 wrong usage, 65 not all of them, 69 it cannot be fetched,\n"
    "73 no room for temporary files.";

constexpr int kMostMajorVersions = 100;

std::string checkVersionOrRange(const std::string& text) {
    const std::size_t hyphen = text.find('-');
    const std::string objection = checkVersion(text.substr(0, hyphen));
    return hyphen == std::string::npos || !objection.empty() ? objection
                                                             : checkVersion(text.substr(hyphen + 1));
}

int majorNumberOf(const std::string& version) {
    int number = 0;
    const std::string major = majorVersion(version);
    if (std::from_chars(major.data(), major.data() + major.size(), number).ec != std::errc()) {
        refuseUsage("the major version of " + version + " is too large");
    }
    return number;
}

} // namespace

std::vector<std::string> versionsInRange(const std::string& range) {
    const std::size_t hyphen = range.find('-');
    if (hyphen == std::string::npos) {
        return {range};
    }
    const std::string first = range.substr(0, hyphen);
    const std::string last = range.substr(hyphen + 1);
    const int firstMajor = majorNumberOf(first);
    const int lastMajor = majorNumberOf(last);
    if (compareVersions(first, last) != ComparisonResult::ascending ||
        lastMajor - firstMajor > kMostMajorVersions) {
        refuseUsage("--bootstrapper: the range " + range +
                    " must go from an older to a newer version, over at most " +
                    std::to_string(kMostMajorVersions) + " major versions");
    }
    std::vector<std::string> versions{first};
    for (int major = firstMajor + 1; major < lastMajor; ++major) {
        versions.push_back(std::to_string(major));
    }
    versions.push_back(last);
    return versions;
}

void addVerifyOptions(CommandLine& line, VerifyOptions& options) {
    line.listOption("--bootstrapper", options.bootstrappers, "V",
                    "answer for a bootstrapper of this version, or for a range such as\n"
                    "13.4-15.1; may be repeated; without it, the version of this build")
        ->check(checkVersionOrRange);
    line.option("--system", options.system, "SYSTEM",
                "the engine must be for this system: linux-amd64, linux-arm64 or\nmacos; without it, for any")
        ->check(CLI::IsMember(knownSystems()));
    line.option("--authority", options.authority, "FILE",
                "trust the certificate authorities in this PEM file, for a server that\n"
                "is being tested; bootstrappers trust only the system's");
}

void completeVerifyOptions(VerifyOptions& options) {
    std::vector<std::string> versions;
    for (const std::string& range : options.bootstrappers) {
        for (const std::string& version : versionsInRange(range)) {
            versions.push_back(version);
        }
    }
    if (versions.empty()) {
        versions.push_back(platform::ownVersion().value());
    }
    options.bootstrappers = versions;
}

VerifyOptions parseVerifyOptions(const Arguments& arguments) {
    CommandLine line("orvane-publish verify", kDescription, kStatuses);
    VerifyOptions options{.url = productDeployment().fileDescriptionUrl, .bootstrappers = {}};
    line.option("URL", options.url, "",
                "HTTPS address of the description; without it, the address that\n"
                "bootstrappers of this build request")
        ->check(checkHttpsAddress);
    addVerifyOptions(line, options);
    line.add_flag("--json", options.json, "print the result as one JSON object");
    line.read(arguments);
    completeVerifyOptions(options);
    return options;
}

} // namespace orvane::tools
