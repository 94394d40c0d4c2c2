#include "tests/platform/UrlSessionFixture.h"

#include "tests/support/TemporaryFolder.h"

namespace orvane::test {

using platform::UrlRequest;
using platform::UrlSession;
using platform::UrlSessionDataDelegate;

namespace {

struct KnownAuthority {
    KnownAuthority() { authority.writeCertificate(file); }

    TestAuthority authority;
    TemporaryFolder folder;
    std::string file = folder.path() / "authority.pem";
};

const KnownAuthority& known() {
    static const KnownAuthority authority;
    return authority;
}

} // namespace

Identity loopbackIdentity() { return knownAuthority().issue("IP:127.0.0.1"); }

const TestAuthority& strangeAuthority() {
    static const TestAuthority authority;
    return authority;
}

const TestAuthority& knownAuthority() { return known().authority; }

std::string knownAuthorityFile() { return known().file; }

TlsServer::Conversation answering(const std::string& response) {
    return [response](TlsConnection& connection) {
        connection.readRequest();
        connection.send(response);
    };
}

std::string okHead(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\nConnection: close\r\n\r\n";
}

std::string okResponse(const std::string& body) { return okHead(body.size()) + body; }

std::string longText(std::size_t length) {
    std::string text;
    for (std::size_t number = 0; text.size() < length; ++number) {
        text += std::to_string(number) + ' ';
    }
    text.resize(length);
    return text;
}

UrlSessionFixture::UrlSessionFixture() { trustAuthoritiesOf(knownAuthorityFile()); }

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
