#pragma once

#include "tests/support/LoopbackServer.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvane::test {

/// An HTTP answer with its length announced.
std::string response(const std::string& body, const std::string& status = "200 OK");

/// A server on loopback that this program believes. It answers each request as the test said for its path and
/// query, keeps every request exactly as it came, and fails the test for one that has no answer.
class ScriptedServer {
public:
    /// Answers on a thread of the connection's own; the connection ends with it.
    using Answer = std::function<void(LoopbackConnection&)>;

    ScriptedServer();

    /// "https://127.0.0.1:PORT", what all its addresses begin with.
    std::string root() const { return server_->url(""); }

    void answer(const std::string& target, Answer answer);
    void answer(const std::string& target, const std::string& response);

    /// Head and body of each request so far.
    std::vector<std::string> requests() const;

    /// The first lines of the requests so far, less the protocol: "GET /downloadinstaller".
    std::vector<std::string> requestLines() const;

    int connectionCount() const { return server_->connectionCount(); }

private:
    void converse(LoopbackConnection& connection);
    Answer answerTo(const std::string& request) const;

    TemporaryFolder folder_;
    mutable std::mutex mutex_;
    std::map<std::string, Answer> answers_;
    std::vector<std::string> requests_;
    std::unique_ptr<LoopbackServer> server_;
};

} // namespace orvane::test
