#include "platform/Digest.h"

#include "platform/Error.h"
#include "platform/OpenSsl_linux.h"

#include <cstdint>
#include <openssl/err.h>
#include <openssl/evp.h>

namespace orvane::platform {

namespace {

void demand(int succeeded) {
    if (succeeded != 1) {
        const unsigned long code = ERR_get_error();
        throw Error("OpenSSL", static_cast<std::int64_t>(code), ERR_error_string(code, nullptr));
    }
}

} // namespace

struct Digest::Context {
    Context() : evp(EVP_MD_CTX_new()) {}
    ~Context() { EVP_MD_CTX_free(evp); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    EVP_MD_CTX* const evp;
};

Digest::Digest(DigestAlgorithm algorithm) {
    prepareOpenSsl();
    context_ = std::make_unique<Context>();
    demand(EVP_DigestInit_ex(context_->evp, algorithm == DigestAlgorithm::md5 ? EVP_md5() : EVP_sha256(),
                             nullptr));
}

Digest::~Digest() = default;

void Digest::feed(ByteView data) { demand(EVP_DigestUpdate(context_->evp, data.data(), data.size())); }

Bytes Digest::final() {
    Bytes digest(EVP_MAX_MD_SIZE);
    unsigned length = 0;
    demand(EVP_DigestFinal_ex(context_->evp, reinterpret_cast<unsigned char*>(digest.data()), &length));
    digest.resize(length);
    return digest;
}

} // namespace orvane::platform
