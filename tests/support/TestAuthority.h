#pragma once

#include <filesystem>
#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>

namespace orvane::test {

struct CertificateDeleter {
    void operator()(X509* certificate) const { X509_free(certificate); }
};
struct KeyDeleter {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

/// What a server proves its name with.
struct Identity {
    std::unique_ptr<EVP_PKEY, KeyDeleter> key;
    std::unique_ptr<X509, CertificateDeleter> certificate;
};

enum class Validity { current, expired };

/// A certificate authority made on the spot.
class TestAuthority {
public:
    TestAuthority();

    /// `names` as OpenSSL writes subject alternative names: "IP:127.0.0.1,DNS:localhost".
    Identity issue(const std::string& names, Validity validity = Validity::current) const;

    void writeCertificate(const std::filesystem::path& pemFile) const;

private:
    Identity own_;
};

} // namespace orvane::test
