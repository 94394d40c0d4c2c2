#include "tests/platform/HostileEnvironment_linux.h"
#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TlsTransport.h"
#include "tests/support/TrustedTestAuthorities.h"

#include <atomic>
#include <filesystem>

namespace orvane::test {

namespace {

// CURLcode values, as log lines show them
constexpr std::int64_t kProxyNotFound = 5;
constexpr std::int64_t kNotBelieved = 60;

/// Whom sessions believe, and through whom they go.
class UrlSessionTrustTest : public UrlSessionFixture {
protected:
    UrlSessionTrustTest() { trustAuthoritiesOf(knownAuthorityFile()); }
};

/// An authority that nobody knows.
const TestAuthority& strangeAuthority() {
    static const TestAuthority authority;
    return authority;
}

std::shared_ptr<TlsTransport> provenBy(Identity identity,
                                       TlsTransport::Manner manner = TlsTransport::Manner::direct) {
    return std::make_shared<TlsTransport>(std::move(identity), manner);
}

/// The task failed before any response, with this code.
void expectFailure(const Record& record, std::int64_t code) {
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->domain(), "libcurl");
    EXPECT_EQ(record.error->code(), code) << record.error->localizedDescription();
}

TEST_F(UrlSessionTrustTest, AServerWithAStrangersCertificateIsNotBelieved) {
    std::atomic<bool> gotRequest = false;
    const auto conversation = [&](LoopbackConnection& connection) {
        gotRequest = !connection.readRequest().empty();
    };
    const LoopbackServer server(conversation, provenBy(strangeAuthority().issue("IP:127.0.0.1")));
    const Record record = fetch(server.url());
    expectFailure(record, kNotBelieved);
    EXPECT_NE(record.error->localizedDescription().find("127.0.0.1"), std::string::npos);
    EXPECT_FALSE(gotRequest);
}

TEST_F(UrlSessionTrustTest, AServerWithAnotherHostsCertificateIsNotBelieved) {
    const LoopbackServer server(answering(okResponse("no")),
                                provenBy(knownAuthority().issue("DNS:downloads.example,IP:127.0.0.2")));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionTrustTest, AServerWithAnExpiredCertificateIsNotBelieved) {
    const LoopbackServer server(answering(okResponse("no")),
                                provenBy(knownAuthority().issue("IP:127.0.0.1", Validity::expired)));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionTrustTest, ARedirectToAServerThatIsNotBelievedFails) {
    const LoopbackServer stranger(answering(okResponse("no")),
                                  provenBy(strangeAuthority().issue("IP:127.0.0.1")));
    const LoopbackServer server(answering("HTTP/1.1 307 Temporary Redirect\r\nLocation: " + stranger.url() +
                                          "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionTrustTest, TheEnvironmentAddsNoAuthorityToTheSystems) {
    const TemporaryFolder folder;
    const EnvironmentVariable file("SSL_CERT_FILE", knownAuthorityFile());
    const EnvironmentVariable directory("SSL_CERT_DIR", folder.path());
    const EnvironmentVariable bundle("CURL_CA_BUNDLE", knownAuthorityFile());
    const LoopbackServer server(answering(okResponse("yes")));
    EXPECT_EQ(fetch(server.url()).body, "yes");
    trustAuthoritiesOf("");
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionTrustTest, AnAuthorityOfOurOwnReplacesTheEnvironmentsAndTheSystems) {
    const TemporaryFolder folder;
    strangeAuthority().writeCertificate(folder.path() / "stranger.pem");
    const EnvironmentVariable file("SSL_CERT_FILE", folder.path() / "stranger.pem");
    const LoopbackServer server(answering(okResponse("no")),
                                provenBy(strangeAuthority().issue("IP:127.0.0.1")));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionTrustTest, TheEnvironmentCannotHaveSessionKeysWritten) {
    const LoopbackServer server(answering(okResponse("secret")));
    EXPECT_EQ(fetch(server.url()).body, "secret");
    EXPECT_TRUE(!std::filesystem::exists(keyLogFile()) || contentsOf(keyLogFile()).empty());
}

TEST_F(UrlSessionTrustTest, TheEnvironmentsOpenSslConfigurationDoesNotCount) {
    const LoopbackServer server(answering(okResponse("modern")));
    EXPECT_EQ(fetch(server.url()).body, "modern");
}

TEST_F(UrlSessionTrustTest, TheEnvironmentsProxyIsUsedAndItsOwnAnswersAreNotTheResponse) {
    const std::string redirect = "HTTP/1.1 302 Found\r\nLocation: https://mirror.example:8443/engine\r\n"
                                 "Content-Length: 0\r\nConnection: close\r\n\r\n";
    const auto conversation = [&](LoopbackConnection& connection) {
        const bool isForMirror = connection.readRequest().find("Host: mirror.example") != std::string::npos;
        connection.send(isForMirror ? okResponse("by proxy") : redirect);
    };
    const auto transport = provenBy(knownAuthority().issue("DNS:downloads.example,DNS:mirror.example"),
                                    TlsTransport::Manner::behindProxy);
    const LoopbackServer server(conversation, transport);
    const EnvironmentVariable variable("https_proxy", "http://127.0.0.1:" + std::to_string(server.port()));
    const Record record = fetch("https://downloads.example:8443/engine");
    EXPECT_TRUE(transport->proxyRequest().starts_with("CONNECT mirror.example:8443 HTTP/1.1\r\n"));
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 8);
    EXPECT_EQ(record.body, "by proxy");
}

TEST_F(UrlSessionTrustTest, AProxyThatIsNotThereIsAnError) {
    const EnvironmentVariable variable("https_proxy", "http://proxy.invalid:3128");
    expectFailure(fetch("https://127.0.0.1:9/"), kProxyNotFound);
}

} // namespace

} // namespace orvane::test
