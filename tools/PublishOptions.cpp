#include "tools/PublishOptions.h"

#include "platform/Url.h"
#include "tools/CommandLine.h"

#include <map>

namespace orvane::tools {

const std::string_view kPublishUsage =
    R"(Usage: orvane-publish FILE --version V --url URL --digest md5|sha256 --cipher none|xor|pkg --output FOLDER
                      [--plain-engine ENGINE] [--dry-run] [--json]
       orvane-publish verify [URL] ...    see orvane-publish verify --help

Prepares an engine for download. Writes the description, downloadinstaller.json, and what is transferred
into FOLDER, and prints both digests. Nothing is replaced unless everything succeeded.

  FILE                   the engine; with --cipher pkg, the package that installs it
  --version V            the engine's version, numbers separated by points
  --url URL              HTTPS address of the plain engine; its last component names the published file
  --digest ALGORITHM     for both digests: md5 or sha256
  --cipher CIPHER        none: FILE as it is, as NAME
                         xor:  FILE enciphered with its own digest as the key, as NAME.enc
                         pkg:  FILE as it is, as NAME.pkg
  --output FOLDER        made if it is missing
  --plain-engine ENGINE  with --cipher pkg, and only then: the engine that the package installs
  --dry-run              does everything, but leaves FOLDER as it is
  --json                 prints the result as one JSON object
  --help                 prints this text, as does -h

Exit status: 0 published, 64 wrong usage, 65 unsuitable file, 66 file cannot be read, 70 the result does not
decipher back, 73 cannot write. orvane-publish(1) says more.
)";

namespace {

const CommandLineGrammar kGrammar{
    .options = {"--version", "--url", "--digest", "--cipher", "--output", "--plain-engine"},
    .listOptions = {},
    .flags = {"--dry-run", "--json"},
    .operands = {"file"}};

Cipher cipherNamed(const std::string& name) {
    static const std::map<std::string, Cipher> ciphers{
        {"none", Cipher::none}, {"xor", Cipher::exclusiveOr}, {"pkg", Cipher::package}};
    const auto found = ciphers.find(name);
    if (found == ciphers.end()) {
        refuseUsage("--cipher must be none, xor or pkg, not \"" + name + "\"");
    }
    return found->second;
}

std::string checkedDigest(const std::string& digest) {
    if (digest != "md5" && digest != "sha256") {
        refuseUsage("--digest must be md5 or sha256, not \"" + digest + "\"");
    }
    return digest;
}

std::string checkedUrl(const std::string& url) {
    if (!parsesAsUrl(url) || !url.starts_with("https://")) {
        refuseUsage("--url must be an HTTPS address, not \"" + url + "\"");
    }
    // An enciphered engine's address is made by appending to this one.
    if (url.find_first_of("?#") != std::string::npos) {
        refuseUsage("--url must have neither query nor fragment");
    }
    return url;
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

PublishOptions parsePublishOptions(const std::vector<std::string>& arguments) {
    const CommandLine line(arguments, kGrammar);
    PublishOptions options;
    options.input = line.required("file");
    options.version = checkedVersion("--version", line.required("--version"));
    options.url = checkedUrl(line.required("--url"));
    options.name = nameIn(options.url);
    options.digest = checkedDigest(line.required("--digest"));
    options.cipher = cipherNamed(line.required("--cipher"));
    options.output = line.required("--output");
    options.dryRun = line.has("--dry-run");
    options.json = line.has("--json");
    if (options.cipher == Cipher::package) {
        options.plainEngine = line.required("--plain-engine");
    } else if (line.has("--plain-engine")) {
        refuseUsage("--plain-engine goes with --cipher pkg alone: otherwise the file itself is the engine");
    }
    return options;
}

} // namespace orvane::tools
