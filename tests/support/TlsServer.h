#pragma once

#include "platform/SharedField.h"
#include "tests/support/PlainListener.h"
#include "tests/support/TestAuthority.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <openssl/ssl.h>
#include <string>
#include <string_view>
#include <thread>

namespace orvane::test {

/// A connection that a client has made, in the hands of the test: every byte is its own. One thread.
class TlsConnection {
public:
    TlsConnection(SSL_CTX* context, int socket);
    ~TlsConnection();
    TlsConnection(const TlsConnection&) = delete;
    TlsConnection& operator=(const TlsConnection&) = delete;

    bool accept();

    /// Plays the proxy before the TLS connection: reads what the client asks of it and grants it.
    std::string acceptAsProxy() const;

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
    struct SessionDeleter {
        void operator()(SSL* session) const { SSL_free(session); }
    };

    const int socket_;
    const std::unique_ptr<SSL, SessionDeleter> session_;
    bool isDropped_ = false;
};

/// A server on loopback that hands each connection to a function of the test, on a thread of the connection's
/// own. A connection ends with its function. Destruction ends the connections and waits for their functions
/// to return.
class TlsServer {
public:
    using Conversation = std::function<void(TlsConnection&)>;

    /// `direct` speaks TLS at once; `behindProxy` first plays the proxy through which a client asks to be
    /// connected.
    enum class Manner { direct, behindProxy };

    TlsServer(Identity identity, Conversation conversation, Manner manner = Manner::direct);
    ~TlsServer();
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;

    std::string url(const std::string& pathAndQuery = "/") const;
    std::uint16_t port() const { return listener_.port(); }

    /// What the latest client asked of the proxy.
    std::string proxyRequest() const { return proxyRequest_.load(); }

    /// Clients that came so far, whether they believed the server or not.
    int connectionCount() const { return connectionCount_; }

private:
    struct ContextDeleter {
        void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    };

    void acceptConnections();
    void serve(TlsConnection& connection);

    const Identity identity_;
    const std::unique_ptr<SSL_CTX, ContextDeleter> context_;
    const Conversation conversation_;
    const Manner manner_;
    const PlainListener listener_;
    std::atomic<int> connectionCount_ = 0;
    SharedField<std::string> proxyRequest_;

    std::list<TlsConnection> connections_; ///< written by the accepting thread, read when that has ended
    std::list<std::thread> conversations_;
    std::thread acceptance_;
};

} // namespace orvane::test
