#include "tools/VerifyOptions.h"

#include "config/Deployment.h"
#include "platform/Bundle.h"

namespace orvane::tools {

namespace {

constexpr char kDescription[] = "Fetches a published description and the file that it describes, checks both "
                                "as a bootstrapper would, and\n"
                                "prints which bootstrappers accept them. Writes only into a folder for "
                                "temporary files, which it removes.";

constexpr char kStatuses[] =
    "0 all of them accept it, 64 wrong usage, 65 not all of them, 69 it cannot be fetched, 73 no\n"
    "room for temporary files.";

} // namespace

VerifyOptions parseVerifyOptions(const Arguments& arguments) {
    CommandLine line("orvane-publish verify", kDescription, kStatuses);
    VerifyOptions options{.url = productDeployment().fileDescriptionUrl, .bootstrappers = {}};
    line.option("URL", options.url, "",
                "HTTPS address of the description; without it, the address that\n"
                "bootstrappers of this build request")
        ->check(checkHttpsAddress);
    line.listOption("--bootstrapper", options.bootstrappers, "V",
                    "answer for a bootstrapper of this version; may be repeated; without it,\n"
                    "the version of this build")
        ->check(checkVersion);
    line.option("--authority", options.authority, "FILE",
                "trust the certificate authorities in this PEM file, for a server that is\n"
                "being tested; bootstrappers trust only the system's");
    line.add_flag("--json", options.json, "print the result as one JSON object");
    line.read(arguments);
    if (options.bootstrappers.empty()) {
        options.bootstrappers.push_back(platform::ownVersion().value());
    }
    return options;
}

} // namespace orvane::tools
