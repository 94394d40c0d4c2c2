#include "platform/ProgrammingError.h"

#include <cstdio>
#include <cstdlib>

namespace orvane {

void programmingError(std::string_view what) {
    std::fprintf(stderr, "OrvaneBootstrap: programming error: %.*s\n", static_cast<int>(what.size()),
                 what.data());
    std::abort();
}

} // namespace orvane
