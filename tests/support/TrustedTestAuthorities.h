#pragma once

#include <string>

namespace orvane::test {

/// What the sessions of this test program believe from now on: the authorities of a PEM file, or the system's
/// for an empty name. Any thread.
void trustAuthoritiesOf(const std::string& pemFile);

} // namespace orvane::test
