#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace orvane::test {

/// How the bytes of one connection travel. One thread.
class LoopbackStream {
public:
    virtual ~LoopbackStream() = default;

    /// Answers whether the client believes the server.
    virtual bool accept() = 0;

    /// How many bytes came; 0 or less when the client has gone.
    virtual std::ptrdiff_t read(std::span<char> place) = 0;

    /// Answers whether the client still took all of it.
    virtual bool write(std::string_view bytes) = 0;

    /// Lets the client know that it has everything.
    virtual void sayGoodBye() = 0;
};

/// Makes the streams of a server's connections. Any thread.
class LoopbackTransport {
public:
    virtual ~LoopbackTransport() = default;
    virtual std::string scheme() const = 0;

    /// Does not own the socket.
    virtual std::unique_ptr<LoopbackStream> streamOver(int socket) = 0;
};

/// The transport that this platform's sessions are tested with. From this call on they believe it.
std::shared_ptr<LoopbackTransport> believedTransport();

} // namespace orvane::test
