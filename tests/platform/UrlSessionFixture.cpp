#include "tests/platform/UrlSessionFixture.h"

namespace orvane::test {

using platform::UrlRequest;
using platform::UrlSession;
using platform::UrlSessionDataDelegate;

LoopbackServer::Conversation answering(const std::string& response) {
    return [response](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(response);
    };
}

std::string okHead(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\nConnection: close\r\n\r\n";
}

std::string okResponse(const std::string& body) { return okHead(body.size()) + body; }

std::string redirectTo(const std::string& location) {
    return "HTTP/1.1 302 Found\r\nLocation: " + location +
           "\r\nContent-Length: 4\r\nConnection: close\r\n\r\nmove";
}

std::string longText(std::size_t length) {
    std::string text;
    for (std::size_t number = 0; text.size() < length; ++number) {
        text += std::to_string(number) + ' ';
    }
    text.resize(length);
    return text;
}

Record UrlSessionFixture::fetch(const UrlRequest& request) {
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    session->dataTask(request)->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    return delegate->record();
}

Record UrlSessionFixture::fetch(const std::string& url) { return fetch(UrlRequest{.url = url}); }

std::unique_ptr<UrlSession>
UrlSessionFixture::makeSession(const std::shared_ptr<UrlSessionDataDelegate>& delegate) {
    return UrlSession::create({}, delegate);
}

} // namespace orvane::test
