#include "tests/support/TestAuthority.h"

#include <atomic>
#include <cstdio>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace orvane::test {

namespace {

constexpr long kOneDay = 24L * 60 * 60;

void demand(bool succeeded) {
    if (!succeeded) {
        throw std::runtime_error("a certificate could not be made");
    }
}

void addExtension(X509& certificate, int kind, const std::string& value) {
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str());
    demand(extension != nullptr && X509_add_ext(&certificate, extension, -1) == 1);
    X509_EXTENSION_free(extension);
}

/// A fresh key and an unsigned certificate for it.
Identity draft(const std::string& title, long validFrom, long validUntil) {
    static std::atomic<long> count = 0;
    const long serialNumber = ++count;
    Identity identity{std::unique_ptr<EVP_PKEY, KeyDeleter>(EVP_EC_gen("P-256")),
                      std::unique_ptr<X509, CertificateDeleter>(X509_new())};
    X509* certificate = identity.certificate.get();
    demand(identity.key && certificate != nullptr);
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), serialNumber);
    X509_gmtime_adj(X509_getm_notBefore(certificate), validFrom);
    X509_gmtime_adj(X509_getm_notAfter(certificate), validUntil);
    X509_set_pubkey(certificate, identity.key.get());
    const std::string name = title + " " + std::to_string(serialNumber);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
    return identity;
}

} // namespace

TestAuthority::TestAuthority() : own_(draft("Test authority", -kOneDay, kOneDay)) {
    X509* certificate = own_.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
    addExtension(*certificate, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(*certificate, NID_key_usage, "critical,keyCertSign");
    demand(X509_sign(certificate, own_.key.get(), EVP_sha256()) > 0);
}

Identity TestAuthority::issue(const std::string& names, Validity validity) const {
    const bool isExpired = validity == Validity::expired;
    Identity identity =
        draft("Test server", isExpired ? -2 * kOneDay : -kOneDay, isExpired ? -kOneDay : kOneDay);
    X509* certificate = identity.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(own_.certificate.get()));
    addExtension(*certificate, NID_subject_alt_name, names);
    demand(X509_sign(certificate, own_.key.get(), EVP_sha256()) > 0);
    return identity;
}

void TestAuthority::writeCertificate(const std::filesystem::path& pemFile) const {
    std::FILE* file = std::fopen(pemFile.c_str(), "wb");
    demand(file != nullptr);
    demand(PEM_write_X509(file, own_.certificate.get()) == 1);
    std::fclose(file);
}

} // namespace orvane::test
