#include "demo/VendorCertificates.h"

#include <cstdio>
#include <memory>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <sys/stat.h>

namespace orvane::demo {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

constexpr long kDay = 24L * 60 * 60;

void require(bool succeeded, const std::string& what) {
    if (!succeeded) {
        throw std::runtime_error("certificates: " + what + ": " + ERR_error_string(ERR_get_error(), nullptr));
    }
}

Key makeKey() {
    Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    require(key != nullptr, "cannot make a key");
    return key;
}

/// A certificate for `key` without extensions or signature, valid from yesterday for `validity` seconds from
/// now.
Certificate makeCertificate(EVP_PKEY* key, const std::string& commonName, long validity) {
    Certificate certificate(X509_new(), &X509_free);
    require(certificate != nullptr, "no memory");
    // Two runs must not give one serial number to different certificates: clients remember them.
    std::uint64_t serial = 0;
    require(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "no random numbers");
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial >> 1U);
    X509_set_version(certificate.get(), X509_VERSION_3);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -2 * kDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validity);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(commonName.c_str()), -1, -1, 0);
    return certificate;
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()), &X509_EXTENSION_free);
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1,
            "extension " + value);
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuerKey) {
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    addExtension(certificate, issuer, NID_subject_key_identifier, "hash");
    addExtension(certificate, issuer, NID_authority_key_identifier, "keyid");
    require(X509_sign(certificate, issuerKey, EVP_sha256()) != 0, "cannot sign");
}

Certificate makeAuthority(EVP_PKEY* key) {
    Certificate authority = makeCertificate(key, "Demonstration authority", 30 * kDay);
    addExtension(authority.get(), authority.get(), NID_basic_constraints, "critical,CA:TRUE");
    addExtension(authority.get(), authority.get(), NID_key_usage, "critical,keyCertSign,cRLSign");
    sign(authority.get(), authority.get(), key);
    return authority;
}

std::string alternativeNames(const std::vector<std::string>& hosts, CertificateFlaw flaw) {
    if (flaw == CertificateFlaw::wrongHost) {
        return "DNS:elsewhere.invalid";
    }
    std::string names = "IP:127.0.0.1,IP:::1,DNS:localhost";
    for (const std::string& host : hosts) {
        names += ",DNS:" + host;
    }
    return names;
}

Certificate makeServerCertificate(EVP_PKEY* key, const std::vector<std::string>& hosts,
                                  CertificateFlaw flaw) {
    const long validity = flaw == CertificateFlaw::expired ? -kDay : 30 * kDay;
    Certificate server = makeCertificate(key, "Demonstration vendor", validity);
    addExtension(server.get(), server.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(server.get(), server.get(), NID_key_usage, "critical,digitalSignature");
    addExtension(server.get(), server.get(), NID_ext_key_usage, "serverAuth");
    addExtension(server.get(), server.get(), NID_subject_alt_name, alternativeNames(hosts, flaw));
    return server;
}

template <typename Write>
void writePem(const std::filesystem::path& file, mode_t permissions, const Write& write) {
    std::filesystem::remove(file);
    const mode_t savedMask = umask(0777U & ~permissions);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "wbe"),
                                                                 &std::fclose);
    umask(savedMask);
    require(stream != nullptr && write(stream.get()) == 1, "cannot write " + file.string());
}

} // namespace

VendorCertificates makeVendorCertificates(const std::filesystem::path& folder,
                                          const std::vector<std::string>& hosts, CertificateFlaw flaw) {
    const Key authorityKey = makeKey();
    const Certificate authority = makeAuthority(authorityKey.get());
    const Key serverKey = makeKey();
    const Certificate server = makeServerCertificate(serverKey.get(), hosts, flaw);
    if (flaw == CertificateFlaw::selfSigned) {
        sign(server.get(), server.get(), serverKey.get());
    } else {
        sign(server.get(), authority.get(), authorityKey.get());
    }

    std::filesystem::create_directories(folder);
    VendorCertificates files{folder / "ca.pem", folder / "server.pem", folder / "server-key.pem"};
    writePem(files.authority, 0644,
             [&](std::FILE* stream) { return PEM_write_X509(stream, authority.get()); });
    writePem(files.server, 0644, [&](std::FILE* stream) { return PEM_write_X509(stream, server.get()); });
    writePem(files.serverKey, 0600, [&](std::FILE* stream) {
        return PEM_write_PrivateKey(stream, serverKey.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
    return files;
}

} // namespace orvane::demo
