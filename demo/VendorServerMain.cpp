#include "demo/VendorServer.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <fstream>
#include <iostream>
#include <map>

namespace {

using namespace orvane::demo;

constexpr int kUsageStatus = 64;
constexpr int kUnavailableStatus = 69;

constexpr char kDescription[] = "Serves a vendor's HTTPS from FOLDER until SIGINT or SIGTERM. Once it "
                                "listens it prints its origin and writes\n"
                                "it into FOLDER/origin; FOLDER/ca.pem is the authority to trust. "
                                "demo/VendorServer.h describes the other\n"
                                "files of FOLDER.";

const std::map<std::string, CertificateFlaw> kFlaws{{"good", CertificateFlaw::none},
                                                    {"wrong-host", CertificateFlaw::wrongHost},
                                                    {"expired", CertificateFlaw::expired},
                                                    {"self-signed", CertificateFlaw::selfSigned}};

/// Throws `CLI::ParseError`, also when help was asked for.
VendorOptions parseOptions(CLI::App& line, int argumentCount, const char* const* arguments) {
    VendorOptions options;
    std::string flaw = "good";
    std::string tls = "current";
    std::uint16_t port = 0;
    line.set_help_flag("-h,--help", "print this text");
    line.add_option("FOLDER", options.folder)->required();
    line.add_option("--host", options.hosts, "a further name for which the certificate is valid")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    line.add_option("--address", options.address, "where to listen")->capture_default_str();
    line.add_option("--port", port, "on which port; 0 picks a free one")->take_last()->capture_default_str();
    line.add_option("--certificate", flaw)->check(CLI::IsMember(kFlaws))->capture_default_str();
    line.add_option("--tls", tls, "1.1: no newer version")
        ->check(CLI::IsMember({"current", "1.1"}))
        ->capture_default_str();
    line.parse(argumentCount, arguments);
    options.port = port;
    options.certificateFlaw = kFlaws.at(flaw);
    options.oldTls = tls == "1.1";
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
    CLI::App line(kDescription, "VendorServer");
    try {
        const VendorOptions options = parseOptions(line, argumentCount, arguments);
        const sigset_t signals = endingSignals();
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        std::filesystem::remove(options.folder / "origin");
        const VendorServer vendor(options);
        announce(vendor, options.folder);
        int signal = 0;
        sigwait(&signals, &signal);
        return 0;
    } catch (const CLI::ParseError& error) {
        return line.exit(error) == 0 ? 0 : kUsageStatus;
    } catch (const std::exception& error) {
        std::cerr << "VendorServer: " << error.what() << "\n";
        return kUnavailableStatus;
    }
}
