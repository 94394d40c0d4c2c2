#include "platform/Digest.h"

#include <CommonCrypto/CommonDigest.h>

#include <variant>

// The system deprecates MD5 as a cryptographic digest; vendors may still describe engines by it.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace orvane::platform {

struct Digest::Context {
    std::variant<CC_MD5_CTX, CC_SHA256_CTX> state;
};

Digest::Digest(DigestAlgorithm algorithm) : context_(std::make_unique<Context>()) {
    if (algorithm == DigestAlgorithm::md5) {
        CC_MD5_Init(&context_->state.emplace<CC_MD5_CTX>());
    } else {
        CC_SHA256_Init(&context_->state.emplace<CC_SHA256_CTX>());
    }
}

Digest::~Digest() = default;

void Digest::feed(ByteView data) {
    const auto length = static_cast<CC_LONG>(data.size());
    if (auto* const md5 = std::get_if<CC_MD5_CTX>(&context_->state)) {
        CC_MD5_Update(md5, data.data(), length);
    } else if (auto* const sha256 = std::get_if<CC_SHA256_CTX>(&context_->state)) {
        CC_SHA256_Update(sha256, data.data(), length);
    }
}

Bytes Digest::final() {
    if (auto* const md5 = std::get_if<CC_MD5_CTX>(&context_->state)) {
        Bytes digest(CC_MD5_DIGEST_LENGTH);
        CC_MD5_Final(reinterpret_cast<unsigned char*>(digest.data()), md5);
        return digest;
    }
    Bytes digest(CC_SHA256_DIGEST_LENGTH);
    CC_SHA256_Final(reinterpret_cast<unsigned char*>(digest.data()),
                    std::get_if<CC_SHA256_CTX>(&context_->state));
    return digest;
}

} // namespace orvane::platform

#pragma clang diagnostic pop
