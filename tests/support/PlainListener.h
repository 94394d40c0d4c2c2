#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace orvane::test {

/// A port of loopback on which nobody listens, kept from others while the object lives.
class ReservedPort {
public:
    ReservedPort();
    ~ReservedPort();
    ReservedPort(const ReservedPort&) = delete;
    ReservedPort& operator=(const ReservedPort&) = delete;

    std::uint16_t port() const { return port_; }

protected:
    int socket() const { return socket_; }

private:
    int socket_;
    std::uint16_t port_ = 0;
};

/// Listens on loopback without TLS. Clients connect, but nobody speaks.
class PlainListener : public ReservedPort {
public:
    PlainListener();
    ~PlainListener();
    PlainListener(const PlainListener&) = delete;
    PlainListener& operator=(const PlainListener&) = delete;

    /// Waits for the next client. Its socket, which is the caller's to close; nothing once stopped.
    std::optional<int> accept() const;

    /// Ends the waiting for clients. Any thread.
    void stop() const;

private:
    std::array<int, 2> stopPipe_{};
};

} // namespace orvane::test
