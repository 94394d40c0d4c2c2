#include "tools/PublishOptions.h"

#include "platform/Url.h"
#include "tools/PublishError.h"

#include <algorithm>
#include <array>
#include <map>

namespace orvane::tools {

const std::string_view kPublishUsage =
    "Usage: orvane-publish FILE --version V --url URL --digest md5|sha256 --cipher none|xor|pkg --output "
    "FOLDER\n"
    "                      [--plain-engine ENGINE]\n"
    "\n"
    "Prepares an engine for download. Writes the description, downloadinstaller.json, and what is "
    "transferred into\n"
    "FOLDER, and prints both digests. Nothing is replaced unless everything succeeded.\n"
    "\n"
    "  FILE                   the engine; with --cipher pkg, the package that installs it\n"
    "  --version V            the engine's version, numbers separated by points\n"
    "  --url URL              HTTPS address of the plain engine; its last component names the published "
    "file\n"
    "  --digest ALGORITHM     for both digests: md5 or sha256\n"
    "  --cipher CIPHER        none: FILE as it is, as NAME\n"
    "                         xor:  FILE enciphered with its own digest as the key, as NAME.enc\n"
    "                         pkg:  FILE as it is, as NAME.pkg\n"
    "  --output FOLDER        made if it is missing\n"
    "  --plain-engine ENGINE  with --cipher pkg, and only then: the engine that the package installs\n"
    "  --help                 prints this text\n"
    "\n"
    "Exit status: 0 published, 64 wrong usage, 65 unsuitable file, 66 file cannot be read, 70 the result "
    "does not\n"
    "decipher back, 73 cannot write.\n";

namespace {

[[noreturn]] void refuse(const std::string& text) { throw PublishError(PublishStatus::usage, text); }

/// The values of the options by their names; the file stands under the empty name.
using Values = std::map<std::string, std::string>;

constexpr std::array<std::string_view, 6> kOptions{"--version", "--url",    "--digest",
                                                   "--cipher",  "--output", "--plain-engine"};

Values collectValues(const std::vector<std::string>& arguments) {
    Values values;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const bool isOption = argument->starts_with("--");
        const std::string name = isOption ? *argument : "";
        if (isOption && std::ranges::find(kOptions, name) == kOptions.end()) {
            refuse("unknown option " + name);
        }
        if (isOption && ++argument == arguments.end()) {
            refuse(name + " needs a value");
        }
        if (argument->empty()) {
            refuse(isOption ? name + " needs a value" : "the file's name is empty");
        }
        if (!values.emplace(name, *argument).second) {
            refuse(isOption ? name + " is given twice" : "more than one file is given");
        }
    }
    return values;
}

std::string valueOf(const Values& values, const std::string& option) {
    const auto found = values.find(option);
    if (found == values.end()) {
        refuse(option.empty() ? "the file is missing" : option + " is missing");
    }
    return found->second;
}

Cipher cipherNamed(const std::string& name) {
    static const std::map<std::string, Cipher> ciphers{
        {"none", Cipher::none}, {"xor", Cipher::exclusiveOr}, {"pkg", Cipher::package}};
    const auto found = ciphers.find(name);
    if (found == ciphers.end()) {
        refuse("--cipher must be none, xor or pkg, not \"" + name + "\"");
    }
    return found->second;
}

std::string checkedDigest(const std::string& digest) {
    if (digest != "md5" && digest != "sha256") {
        refuse("--digest must be md5 or sha256, not \"" + digest + "\"");
    }
    return digest;
}

std::string checkedVersion(const std::string& version) {
    const bool rightCharacters = version.find_first_not_of("0123456789.") == std::string::npos;
    if (!rightCharacters || version.starts_with('.') || version.ends_with('.') ||
        version.find("..") != std::string::npos) {
        refuse("--version must be numbers separated by points, such as 14.2.7, not \"" + version + "\"");
    }
    return version;
}

std::string checkedUrl(const std::string& url) {
    if (!parsesAsUrl(url) || !url.starts_with("https://")) {
        refuse("--url must be an HTTPS address, not \"" + url + "\"");
    }
    // An enciphered engine's address is made by appending to this one.
    if (url.find_first_of("?#") != std::string::npos) {
        refuse("--url must have neither query nor fragment");
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
        refuse("--url must end in a name for the engine's file, written without percent signs or a leading "
               "point");
    }
    return name;
}

} // namespace

PublishOptions parsePublishOptions(const std::vector<std::string>& arguments) {
    const Values values = collectValues(arguments);
    PublishOptions options;
    options.input = valueOf(values, "");
    options.version = checkedVersion(valueOf(values, "--version"));
    options.url = checkedUrl(valueOf(values, "--url"));
    options.name = nameIn(options.url);
    options.digest = checkedDigest(valueOf(values, "--digest"));
    options.cipher = cipherNamed(valueOf(values, "--cipher"));
    options.output = valueOf(values, "--output");
    if (options.cipher == Cipher::package) {
        options.plainEngine = valueOf(values, "--plain-engine");
    } else if (values.contains("--plain-engine")) {
        refuse("--plain-engine goes with --cipher pkg alone: otherwise the file itself is the engine");
    }
    return options;
}

} // namespace orvane::tools
