#pragma once

#include <string>
#include <string_view>

namespace orvane {

enum class ComparisonResult {
    ascending = -1, ///< the base version is older
    same = 0,
    descending = 1, ///< the base version is newer
};

/// Compares two versions of dot-separated components. The shorter one is continued by components "0"; runs of
/// ASCII digits compare by their numeric value, however long, everything else byte by byte.
ComparisonResult compareVersions(std::string_view baseVersion, std::string_view compareVersion);

/// The first component that is not empty; a version without one is a programming error.
std::string majorVersion(std::string_view version);

} // namespace orvane
