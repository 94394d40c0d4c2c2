#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

enum class Verdict {
    good,
    warning, ///< a bootstrapper takes it; the vendor should still know
    failed,  ///< no bootstrapper gets past it, or one would start something else than was described
};

/// What one check of a publication has found.
struct Finding {
    std::string check; ///< one word, for programs: "digest"
    Verdict verdict = Verdict::good;
    std::string text; ///< a sentence for people

    bool operator==(const Finding&) const = default;
};

using Findings = std::vector<Finding>;

} // namespace orvane::tools
