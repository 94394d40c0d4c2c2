#pragma once

namespace orvane::platform {

/// Readies OpenSSL for this process; to be called before anything else uses it. Any thread, any number of
/// times.
///
/// The system's configuration counts, the one that the environment may name (`OPENSSL_CONF`) does not.
void prepareOpenSsl();

} // namespace orvane::platform
