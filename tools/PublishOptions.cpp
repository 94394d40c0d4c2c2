#include "tools/PublishOptions.h"

#include <map>

namespace orvane::tools {

namespace {

constexpr char kDescription[] =
    "Prepares an engine for download. Writes the description, downloadinstaller.json, and the file that is\n"
    "transferred into FOLDER, and prints both digests. Nothing is replaced unless everything succeeded. "
    "Another\n"
    "command: orvane-publish verify --help.";

constexpr char kStatuses[] =
    "0 published, 64 wrong usage, 65 unsuitable file, 66 file cannot be read, 70 the result does\n"
    "not decrypt to the engine, 73 cannot write.";

const std::map<std::string, Cipher> kCiphers{
    {"none", Cipher::none}, {"xor", Cipher::exclusiveOr}, {"pkg", Cipher::package}};

/// The address of an encrypted engine is made by appending to the plain engine's.
std::string checkPlainAddress(const std::string& url) {
    return url.find_first_of("?#") == std::string::npos ? "" : "must have neither query nor fragment";
}

std::string nameIn(const std::string& url) {
    static constexpr std::string_view kScheme = "https://";
    const std::string rest = url.substr(kScheme.size());
    const std::size_t slash = rest.rfind('/');
    std::string name = slash == std::string::npos ? "" : rest.substr(slash + 1);
    if (slash == 0 || name.empty() || name.starts_with('.') || name.find('%') != std::string::npos ||
        name == "downloadinstaller.json") {
        refuseUsage(
            "--url must end in a name for the engine's file, written without percent signs or a leading "
            "point");
    }
    return name;
}

} // namespace

PublishOptions parsePublishOptions(const Arguments& arguments) {
    CommandLine line("orvane-publish", kDescription, kStatuses);
    PublishOptions options;
    std::string cipher;
    line.option("FILE", options.input, "", "the engine; with --cipher pkg, the package that installs it")
        ->required();
    line.option("--version", options.version, "V", "the engine's version, numbers separated by points")
        ->required()
        ->check(checkVersion);
    line.option("--url", options.url, "URL",
                "HTTPS address of the plain engine; its last component names the\npublished file")
        ->required()
        ->check(checkHttpsAddress)
        ->check(checkPlainAddress);
    line.option("--digest", options.digest, "ALGORITHM", "for both digests: md5 or sha256")
        ->required()
        ->check(CLI::IsMember({"md5", "sha256"}));
    line.option("--cipher", cipher, "CIPHER",
                "none: FILE as it is, as NAME\n"
                "xor: FILE encrypted with its own digest as the key, as NAME.enc\n"
                "pkg: FILE as it is, as NAME.pkg")
        ->required()
        ->check(CLI::IsMember(kCiphers));
    line.option("--output", options.output, "FOLDER", "created if it is missing")->required();
    line.option("--plain-engine", options.plainEngine, "ENGINE",
                "with --cipher pkg, and only then: the engine that the package installs");
    line.add_flag("--dry-run", options.dryRun, "do everything, but leave FOLDER unchanged");
    line.add_flag("--json", options.json, "print the result as one JSON object");
    line.read(arguments);

    options.name = nameIn(options.url);
    options.cipher = kCiphers.at(cipher);
    if (options.cipher == Cipher::package && options.plainEngine.empty()) {
        refuseUsage("--plain-engine is required with --cipher pkg");
    }
    if (options.cipher != Cipher::package && !options.plainEngine.empty()) {
        refuseUsage("--plain-engine is only for --cipher pkg: otherwise FILE itself is the engine");
    }
    return options;
}

} // namespace orvane::tools
