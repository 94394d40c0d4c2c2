#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::demo {

/// What may be wrong with a server's certificate.
enum class CertificateFlaw { none, wrongHost, expired, selfSigned };

/// Where a vendor's certificates lie, as PEM files.
struct VendorCertificates {
    std::filesystem::path authority; ///< the certificate to be trusted
    std::filesystem::path server;
    std::filesystem::path serverKey; ///< readable by this user alone
};

/// Makes an authority of its own and a certificate for 127.0.0.1, ::1, localhost and the further `hosts`, and
/// writes them into `folder`, made if it is missing. With the self-signed flaw the authority has nothing to
/// do with the server's certificate. Throws `std::runtime_error`.
VendorCertificates makeVendorCertificates(const std::filesystem::path& folder,
                                          const std::vector<std::string>& hosts, CertificateFlaw flaw);

} // namespace orvane::demo
