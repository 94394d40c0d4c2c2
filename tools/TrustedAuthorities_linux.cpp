#include "tools/TrustedAuthorities.h"

#include "platform/TrustedAuthorities_linux.h"

#include <utility>

namespace orvane {
namespace {

std::string& authoritiesFile() {
    static std::string file;
    return file;
}

} // namespace

void tools::trustAuthoritiesIn(std::string file) { authoritiesFile() = std::move(file); }

std::string platform::trustedAuthoritiesFile() { return authoritiesFile(); }

} // namespace orvane
