#include "tests/support/ScriptedServer.h"

#include "tests/support/TlsTransport.h"
#include "tests/support/TrustedTestAuthorities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace orvane::test {

namespace {

struct RequestLine {
    std::string method;
    std::string target;
};

RequestLine requestLine(const std::string& request) {
    std::istringstream stream(request);
    RequestLine line;
    stream >> line.method >> line.target;
    return line;
}

} // namespace

std::string response(const std::string& body, const std::string& status) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

ScriptedServer::ScriptedServer() {
    const TestAuthority authority;
    authority.writeCertificate(folder_.path() / "authority.pem");
    trustAuthoritiesOf(folder_.path() / "authority.pem");
    server_ =
        std::make_unique<LoopbackServer>([this](LoopbackConnection& connection) { converse(connection); },
                                         std::make_shared<TlsTransport>(authority.issue("IP:127.0.0.1")));
}

void ScriptedServer::answer(const std::string& target, Answer answer) {
    const std::lock_guard lock(mutex_);
    answers_[target] = std::move(answer);
}

void ScriptedServer::answer(const std::string& target, const std::string& response) {
    answer(target, [response](LoopbackConnection& connection) { connection.send(response); });
}

std::vector<std::string> ScriptedServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::vector<std::string> ScriptedServer::requestLines() const {
    const std::vector<std::string> whole = requests();
    std::vector<std::string> lines(whole.size());
    std::transform(whole.begin(), whole.end(), lines.begin(), [](const std::string& request) {
        const RequestLine line = requestLine(request);
        return line.method + " " + line.target;
    });
    return lines;
}

void ScriptedServer::converse(LoopbackConnection& connection) {
    const std::string request = connection.readRequest();
    if (request.empty()) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
    }
    if (const Answer answer = answerTo(request)) {
        answer(connection);
    } else {
        ADD_FAILURE() << "nobody expected the request " << request;
    }
}

ScriptedServer::Answer ScriptedServer::answerTo(const std::string& request) const {
    const std::lock_guard lock(mutex_);
    const auto found = answers_.find(requestLine(request).target);
    return found == answers_.end() ? Answer() : found->second;
}

} // namespace orvane::test
