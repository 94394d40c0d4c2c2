#pragma once

namespace orvane::test {

enum class TlsVersion { tls11, tls12 };

/// Whether the server at this loopback port and a client that speaks this version alone come to an agreement.
bool speaks(int port, TlsVersion version);

} // namespace orvane::test
