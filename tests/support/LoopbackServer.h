#pragma once

#include "tests/support/LoopbackTransport.h"
#include "tests/support/PlainListener.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace orvane::test {

/// A connection that a client has made, in the hands of the test: every byte is its own. One thread.
class LoopbackConnection {
public:
    LoopbackConnection(int socket, std::unique_ptr<LoopbackStream> stream);
    ~LoopbackConnection();
    LoopbackConnection(const LoopbackConnection&) = delete;
    LoopbackConnection& operator=(const LoopbackConnection&) = delete;

    bool accept() { return stream_->accept(); }

    /// The next request, head and body, exactly as it came; empty when the client has gone.
    std::string readRequest();

    /// Answers whether the client still took it.
    bool send(std::string_view bytes);

    /// Ends the connection without the good-bye by which a client knows that it has everything.
    void drop() { isDropped_ = true; }

    /// Says good-bye unless dropped, and closes.
    void end();

    /// Returns once the client has gone.
    void waitForClientToLeave();

    /// Ends whatever the connection's thread is waiting for. Any thread.
    void interrupt() const;

private:
    const int socket_;
    const std::unique_ptr<LoopbackStream> stream_;
    bool isDropped_ = false;
};

/// A server on loopback that hands each connection to a function of the test, on a thread of the connection's
/// own. A connection ends with its function. Destruction ends the connections and waits for their functions
/// to return.
class LoopbackServer {
public:
    using Conversation = std::function<void(LoopbackConnection&)>;

    explicit LoopbackServer(Conversation conversation,
                            std::shared_ptr<LoopbackTransport> transport = believedTransport());
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string url(const std::string& pathAndQuery = "/") const;
    std::uint16_t port() const { return listener_.port(); }

    /// Clients that came so far, whether they believed the server or not.
    int connectionCount() const { return connectionCount_; }

private:
    void acceptConnections();
    void serve(LoopbackConnection& connection) const;

    const Conversation conversation_;
    const std::shared_ptr<LoopbackTransport> transport_;
    const PlainListener listener_;
    std::atomic<int> connectionCount_ = 0;

    std::list<LoopbackConnection> connections_; ///< written by the accepting thread, read when that has ended
    std::list<std::thread> conversations_;
    std::thread acceptance_;
};

} // namespace orvane::test
