#include "bench/EvpLoop.h"

#include <algorithm>
#include <array>
#include <memory>
#include <openssl/evp.h>
#include <stdexcept>

namespace orvane::bench {

void digestMemory(const std::string& algorithm, ByteView memory) {
    constexpr std::size_t piece = std::size_t{1} << 20;
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    bool succeeded = EVP_DigestInit_ex(context.get(), EVP_get_digestbyname(algorithm.c_str()), nullptr) == 1;
    while (succeeded && !memory.empty()) {
        const ByteView next = memory.first(std::min(piece, memory.size()));
        succeeded = EVP_DigestUpdate(context.get(), next.data(), next.size()) == 1;
        memory = memory.subspan(next.size());
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    if (!succeeded || EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1) {
        throw std::runtime_error("no digest of this name: " + algorithm);
    }
}

} // namespace orvane::bench
