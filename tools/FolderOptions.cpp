#include "tools/FolderOptions.h"
#include "tools/OptionChecks.h"

namespace orvane::tools {
namespace {

void addFolder(CommandLine& line, std::filesystem::path& folder) {
    line.option("--folder", folder, "FOLDER", "where the versions are published")->required();
}

} // namespace

SwitchOptions parseSwitchOptions(const Arguments& arguments) {
    CommandLine line(
        "orvane-publish switch",
        "Lets users get version V of FOLDER, newer or older than the one they get now. First checks\n"
        "what they will get: fetches the engine from its address, as \"verify\" does. Then replaces\n"
        "FOLDER/downloadinstaller.json in one step. Changes nothing if a check fails.",
        "0 done, 64 wrong usage, 65 not all bootstrappers would accept it, 66 no such\n"
        "version, 69 it cannot be fetched, 73 cannot write.");
    SwitchOptions options;
    bool staged = false;
    bool endStaging = false;
    line.option("V", options.version, "", "the version")->check(checkVersion);
    addFolder(line, options.folder);
    line.add_flag("--staged", staged,
                  "for the clients of a staged roll-out: replace\nFOLDER/downloadinstaller-staged.json");
    line.add_flag("--end-staging", endStaging,
                  "instead of V: remove the staged description, so that all clients get\nthe current one");
    addVerifyOptions(line, options.verification);
    line.add_flag("--json", options.json, "print the result of the checks as one JSON object");
    line.read(arguments);
    if (endStaging != options.version.empty() || (endStaging && staged)) {
        refuseUsage("either V, with or without --staged, or --end-staging alone is required");
    }
    options.channel = staged ? Channel::staged : Channel::current;
    completeVerifyOptions(options.verification);
    return options;
}

ListOptions parseListOptions(const Arguments& arguments) {
    CommandLine line(
        "orvane-publish list",
        "Prints the versions in FOLDER, the newest first, with the size and the digest of the file\n"
        "that is transferred, and which of them users get.",
        "0 done, 64 wrong usage, 65 a version's description describes another version,\n"
        "66 a file cannot be read.");
    ListOptions options;
    addFolder(line, options.folder);
    line.add_flag("--json", options.json, "print one JSON object");
    line.read(arguments);
    return options;
}

PruneOptions parsePruneOptions(const Arguments& arguments) {
    CommandLine line(
        "orvane-publish prune",
        "Removes all but the N newest versions from FOLDER. Never removes the current version or the\n"
        "staged one.",
        "0 done, 64 wrong usage, 65 a version's description describes another version,\n"
        "66 a file cannot be read, 73 cannot remove.");
    PruneOptions options;
    addFolder(line, options.folder);
    line.option("--keep", options.keep, "N", "how many of the newest versions stay")
        ->required()
        ->check(CLI::Range(std::size_t{1}, std::size_t{1000000}));
    line.add_flag("--dry-run", options.dryRun, "only print what would be removed");
    line.read(arguments);
    return options;
}

} // namespace orvane::tools
