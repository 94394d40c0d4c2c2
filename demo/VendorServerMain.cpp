#include "demo/VendorServer.h"

#include <charconv>
#include <csignal>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>

namespace {

using namespace orvane::demo;

constexpr int kUsageStatus = 64;
constexpr int kUnavailableStatus = 69;

constexpr char kUsage[] =
    "Usage: VendorServer FOLDER [--host NAME]... [--address ADDRESS] [--port N] [--certificate KIND]\n"
    "                    [--tls VERSION]\n"
    "\n"
    "Serves a vendor's HTTPS from FOLDER until SIGINT or SIGTERM. Once it listens it prints its origin and "
    "writes it\n"
    "into FOLDER/origin; FOLDER/ca.pem is the authority to trust. demo/VendorServer.h says what else lies "
    "there.\n"
    "\n"
    "  --host NAME         a further name for which the certificate holds\n"
    "  --address ADDRESS   where to listen (127.0.0.1)\n"
    "  --port N            on which port; 0 picks a free one (0)\n"
    "  --certificate KIND  good, wrong-host, expired or self-signed (good)\n"
    "  --tls VERSION       current, or 1.1 alone (current)\n";

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

CertificateFlaw flawNamed(const std::string& name) {
    static const std::map<std::string, CertificateFlaw> flaws{{"good", CertificateFlaw::none},
                                                              {"wrong-host", CertificateFlaw::wrongHost},
                                                              {"expired", CertificateFlaw::expired},
                                                              {"self-signed", CertificateFlaw::selfSigned}};
    const auto found = flaws.find(name);
    if (found == flaws.end()) {
        throw UsageError("unknown certificate kind " + name);
    }
    return found->second;
}

bool isOldTls(const std::string& version) {
    if (version != "current" && version != "1.1") {
        throw UsageError("unknown TLS version " + version);
    }
    return version == "1.1";
}

int portIn(const std::string& text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw UsageError("\"" + text + "\" is not a port");
    }
    return port;
}

void setOption(VendorOptions& options, const std::string& name, const std::string& value) {
    if (name == "--host") {
        options.hosts.push_back(value);
    } else if (name == "--address") {
        options.address = value;
    } else if (name == "--port") {
        options.port = portIn(value);
    } else if (name == "--certificate") {
        options.certificateFlaw = flawNamed(value);
    } else if (name == "--tls") {
        options.oldTls = isOldTls(value);
    } else {
        throw UsageError("unknown option " + name);
    }
}

VendorOptions parseOptions(const std::vector<std::string>& arguments) {
    VendorOptions options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (!argument->starts_with("--")) {
            options.folder = *argument;
        } else if (std::next(argument) == arguments.end()) {
            throw UsageError(*argument + " needs a value");
        } else {
            const std::string& name = *argument;
            setOption(options, name, *++argument);
        }
    }
    if (options.folder.empty()) {
        throw UsageError("a folder is missing");
    }
    return options;
}

/// To be blocked in every thread, so that only `sigwait` sees them.
sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

void announce(const VendorServer& vendor, const std::filesystem::path& folder) {
    const std::filesystem::path partial = folder / "origin.partial";
    std::ofstream(partial) << vendor.origin() << "\n";
    std::filesystem::rename(partial, folder / "origin");
    std::cout << "listening on " << vendor.origin() << std::endl;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> all(arguments + 1, arguments + argumentCount);
    if (all.size() == 1 && all[0] == "--help") {
        std::cout << kUsage;
        return 0;
    }
    try {
        const VendorOptions options = parseOptions(all);
        const sigset_t signals = endingSignals();
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        std::filesystem::remove(options.folder / "origin");
        const VendorServer vendor(options);
        announce(vendor, options.folder);
        int signal = 0;
        sigwait(&signals, &signal);
        return 0;
    } catch (const UsageError& error) {
        std::cerr << "VendorServer: " << error.what() << "\n" << kUsage;
        return kUsageStatus;
    } catch (const std::exception& error) {
        std::cerr << "VendorServer: " << error.what() << "\n";
        return kUnavailableStatus;
    }
}
