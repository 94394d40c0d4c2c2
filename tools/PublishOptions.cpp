#include "tools/PublishOptions.h"

#include "tools/OptionChecks.h"
#include "tools/ProgramFormat.h"
#include "tools/PublicationFolder.h"

#include <map>

namespace orvane::tools {
namespace {

constexpr char kDescription[] =
    "Prepares a version of an engine for download: makes FOLDER/V with the file that is transferred and its\n"
    "description, and prints both digests. Users get the version after \"switch\". A version that is "
    "published\n"
    "is never changed. Other commands, each with --help:\n"
    "\n"
    "  orvane-publish switch    let users get a version that is published\n"
    "  orvane-publish list      show what is published\n"
    "  orvane-publish prune     remove old versions\n"
    "  orvane-publish verify    check what users get";

constexpr char kStatuses[] =
    "0 published, or published before with the same contents, 64 wrong usage, 65 unsuitable file,\n"
    "66 file cannot be read, 70 the result does not decrypt to the engine, 73 cannot write.";

const std::map<std::string, Cipher> kCiphers{
    {"none", Cipher::none}, {"xor", Cipher::exclusiveOr}, {"pkg", Cipher::package}};

/// The version and the name are appended to it.
std::string checkBaseAddress(const std::string& url) {
    return url.find_first_of("?#") == std::string::npos ? "" : "must have neither query nor fragment";
}

std::string checkName(const std::string& name) {
    const bool isPlain = name.find_first_of("/%?# ") == std::string::npos && !name.starts_with('.');
    return isPlain && name != kDescriptionName && checkHttpsAddress("https://h.example/" + name).empty()
               ? ""
               : "must be a plain file name, without percent signs or a leading dot";
}

void addEngineOptions(CommandLine& line, PublishOptions& options, std::string& cipher, bool& noRun) {
    line.option("FILE", options.input, "", "the engine; with --cipher pkg, the package that installs it")
        ->required();
    line.option("--base-url", options.baseUrl, "URL",
                "HTTPS address at which FOLDER is served; the engine's address is\nURL/V/NAME")
        ->required()
        ->check(checkHttpsAddress)
        ->check(checkBaseAddress);
    line.option("--folder", options.folder, "FOLDER", "created if it is missing")->required();
    line.option("--version", options.version, "V",
                "the engine's version; without it, what FILE --version prints, and\n"
                "with it, what FILE --version must print")
        ->check(checkVersion);
    line.option("--name", options.name, "NAME", "the engine's file name; varlen-setup without it")
        ->check(checkName);
    line.option("--system", options.system, "SYSTEM",
                "the system that FILE is for: linux-amd64, linux-arm64 or macos;\nwithout it, this one")
        ->check(CLI::IsMember(knownSystems()));
    line.add_flag("--no-run", noRun, "do not run FILE; needs --version");
    line.option("--digest", options.digest, "ALGORITHM", "for both digests: sha256 (the default) or md5")
        ->check(CLI::IsMember({"md5", "sha256"}));
    line.option("--cipher", cipher, "CIPHER",
                "xor:  FILE encrypted with its own digest as the key, as NAME.enc\n"
                "      (the default)\n"
                "none: FILE as it is, as NAME\n"
                "pkg:  FILE as it is, as NAME.pkg; for macOS only")
        ->check(CLI::IsMember(kCiphers));
    line.option("--plain-engine", options.plainEngine, "ENGINE",
                "with --cipher pkg, and only then: the engine that the package\ninstalls");
}

void checkCombination(const PublishOptions& options) {
    const bool isPackage = options.cipher == Cipher::package;
    if (isPackage && options.plainEngine.empty()) {
        refuseUsage("--plain-engine is required with --cipher pkg");
    }
    if (!isPackage && !options.plainEngine.empty()) {
        refuseUsage("--plain-engine is only for --cipher pkg: otherwise FILE itself is the engine");
    }
    if (isPackage && options.system != "macos") {
        refuseUsage("--cipher pkg is only for --system macos: other systems have no such installer");
    }
    if (options.run && options.system != thisSystem()) {
        refuseUsage("an engine for " + options.system + " cannot run on " + thisSystem() +
                    "; add --no-run and --version");
    }
    if (!options.run && options.version.empty()) {
        refuseUsage("--version is required with --no-run");
    }
}

} // namespace

PublishOptions parsePublishOptions(const Arguments& arguments) {
    CommandLine line("orvane-publish", kDescription, kStatuses);
    PublishOptions options;
    options.system = thisSystem();
    std::string cipher = "xor";
    bool noRun = false;
    addEngineOptions(line, options, cipher, noRun);
    line.add_flag("--dry-run", options.dryRun, "do everything, but leave FOLDER unchanged");
    line.add_flag("--json", options.json, "print the result as one JSON object");
    line.read(arguments);
    while (options.baseUrl.ends_with('/')) {
        options.baseUrl.pop_back();
    }
    options.cipher = kCiphers.at(cipher);
    options.run = !noRun;
    checkCombination(options);
    return options;
}

} // namespace orvane::tools
