#pragma once

#include "platform/Bytes.h"

#include <memory>

namespace orvane::platform {

enum class DigestAlgorithm { md5, sha256 };

/// One digest computation over data that arrives in pieces. One thread at a time. Its operations throw
/// `Error` where the platform refuses the algorithm.
class Digest {
public:
    explicit Digest(DigestAlgorithm algorithm);
    ~Digest();
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;

    /// At most 4294967295 bytes at once; more is a programming error.
    void update(ByteView data);

    /// The digest of everything fed in: 16 bytes for MD5, 32 for SHA-256. Ends the computation.
    Bytes final();

private:
    struct Context;

    void feed(ByteView data);

    std::unique_ptr<Context> context_;
};

} // namespace orvane::platform
