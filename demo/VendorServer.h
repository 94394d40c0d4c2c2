#pragma once

#include "demo/VendorCertificates.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvane::demo {

struct VendorOptions {
    std::filesystem::path folder;
    std::string address = "127.0.0.1";
    int port = 0;                   ///< 0 picks a free one
    std::vector<std::string> hosts; ///< names for which the certificate holds, besides those of this machine
    CertificateFlaw certificateFlaw = CertificateFlaw::none;
    bool oldTls = false; ///< speaks TLS 1.1 and nothing newer
};

/// A whole vendor behind HTTPS: the engine's description, the engine files, the address for crash reports.
/// Serves from its construction to its destruction, on threads of its own.
///
/// Its folder holds what it serves and what it noted:
///
///     published/           what is served: GET /downloadinstaller?os=darwin&product=varlen answers
///                          downloadinstaller.json, GET /varlen/setup/PATH answers the file PATH
///     faults.json          read anew for each request, see VendorFaults.h; replace it by renaming
///     release              ends stalls, see VendorFaults.h
///     ca.pem               the authority to be trusted, made at start
///     requests.log         each request as a line of JSON: "method", "target", "headers"
///     unexpected.log       each request that no client of a vendor should send, likewise, with a "reason";
///                          answered 404, or 400 for a bad report; the file is missing while all is well
///     reports/NNN.json     each crash report as it came, and NNN.log its log
///
/// A path that has a fault is expected by that. Every response closes its connection.
class VendorServer {
public:
    /// Binds, makes the certificates and starts to serve. Throws `std::runtime_error`.
    explicit VendorServer(VendorOptions options);

    /// Cuts what is under way and waits for its threads.
    ~VendorServer();
    VendorServer(const VendorServer&) = delete;
    VendorServer& operator=(const VendorServer&) = delete;

    int port() const;

    /// "https://localhost:PORT", or with the address in brackets where that is one of IPv6.
    std::string origin() const;

private:
    class Service;
    std::unique_ptr<Service> service_;
};

} // namespace orvane::demo
