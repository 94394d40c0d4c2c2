#pragma once

#include <string>

namespace orvane::tools {

/// Names the PEM file whose authorities this program trusts instead of the system's; empty for the system's.
/// Call it before the first session exists.
void trustAuthoritiesIn(std::string file);

} // namespace orvane::tools
