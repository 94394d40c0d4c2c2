#pragma once

#include <cstdint>

namespace orvane::test {

/// A port of loopback on which nobody listens, kept from others while the object lives.
class ReservedPort {
public:
    ReservedPort();
    ~ReservedPort();
    ReservedPort(const ReservedPort&) = delete;
    ReservedPort& operator=(const ReservedPort&) = delete;

    std::uint16_t port() const { return port_; }

    int socket() const { return socket_; }

private:
    int socket_;
    std::uint16_t port_ = 0;
};

/// Listens on loopback without TLS. Clients connect, but nobody speaks.
class PlainListener : public ReservedPort {
public:
    PlainListener();
};

} // namespace orvane::test
