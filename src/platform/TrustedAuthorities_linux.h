#pragma once

#include <string>

namespace orvane::platform {

/// A PEM file with the certificate authorities that sessions believe; empty for the system's own.
///
/// Chosen at link time: the product links the answer "the system's own", a rehearsal or a test brings the
/// authority of its own vendor. So nothing that a user or an environment sets can widen the product's trust.
std::string trustedAuthoritiesFile();

} // namespace orvane::platform
