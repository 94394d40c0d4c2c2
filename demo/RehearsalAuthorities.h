#pragma once

#include <string>

namespace orvane::demo {

/// Names the PEM file whose authorities this program believes instead of the system's. To be called once,
/// before the application starts.
void trustAuthoritiesIn(std::string file);

} // namespace orvane::demo
