#include "tools/VerifyOptions.h"

#include "config/Deployment.h"
#include "platform/Bundle.h"
#include "platform/Url.h"
#include "tools/CommandLine.h"

namespace orvane::tools {

const std::string_view kVerifyUsage =
    R"(Usage: orvane-publish verify [URL] [--bootstrapper V]... [--authority FILE] [--json]

Fetches a published description and what it describes, checks both as a bootstrapper would, and says which
bootstrappers accept them. Writes nothing but into a folder for temporary files, removed again.

  URL               HTTPS address of the description; without it, the one that bootstrappers of this build ask
  --bootstrapper V  answer for a bootstrapper of this version; may be repeated; without it, this build's own
  --authority FILE  believe the certificate authorities in this PEM file, for a server that is tried out;
                    bootstrappers believe the system's alone
  --json            prints the result as one JSON object
  --help            prints this text, as does -h

Exit status: 0 all of them accept it, 64 wrong usage, 65 not all of them, 69 it cannot be fetched, 73 no room
for temporary files. orvane-publish(1) says more.
)";

namespace {

const CommandLineGrammar kGrammar{
    .options = {"--authority"}, .listOptions = {"--bootstrapper"}, .flags = {"--json"}, .operands = {"URL"}};

std::string checkedUrl(const std::string& url) {
    if (!parsesAsUrl(url) || !url.starts_with("https://")) {
        refuseUsage("the URL must be an HTTPS address, not \"" + url + "\"");
    }
    return url;
}

} // namespace

VerifyOptions parseVerifyOptions(const std::vector<std::string>& arguments) {
    const CommandLine line(arguments, kGrammar);
    VerifyOptions options;
    options.url = checkedUrl(line.value("URL").value_or(productDeployment().fileDescriptionUrl));
    for (const std::string& version : line.values("--bootstrapper")) {
        options.bootstrappers.push_back(checkedVersion("--bootstrapper", version));
    }
    if (options.bootstrappers.empty()) {
        options.bootstrappers.push_back(platform::ownVersion().value());
    }
    options.authority = line.value("--authority").value_or("");
    options.json = line.has("--json");
    return options;
}

} // namespace orvane::tools
