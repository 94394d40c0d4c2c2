#include "platform/OpenSsl_linux.h"

#include <memory>
#include <mutex>
#include <openssl/crypto.h>
#include <openssl/x509.h>
#include <string>

namespace orvane::platform {

namespace {

struct SettingsDeleter {
    void operator()(OPENSSL_INIT_SETTINGS* settings) const { OPENSSL_INIT_free(settings); }
};

void prepareOnce() {
    const std::unique_ptr<OPENSSL_INIT_SETTINGS, SettingsDeleter> settings(OPENSSL_INIT_new());
    const std::string configuration = std::string(X509_get_default_cert_area()) + "/openssl.cnf";
    OPENSSL_INIT_set_config_filename(settings.get(), configuration.c_str());
    // A transfer may still run when the process exits; OpenSSL must not vanish from under it.
    OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG | OPENSSL_INIT_NO_ATEXIT, settings.get());
}

} // namespace

void prepareOpenSsl() {
    static std::once_flag once;
    std::call_once(once, prepareOnce);
}

} // namespace orvane::platform
