#include "tests/platform/HostileEnvironment.h"
#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/PlainListener.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>

namespace orvane::test {

namespace {

using platform::UrlRequest;

// CURLcode values, as log lines show them
constexpr std::int64_t kUnsupportedProtocol = 1;
constexpr std::int64_t kMalformedUrl = 3;
constexpr std::int64_t kProxyNotFound = 5;
constexpr std::int64_t kHostNotFound = 6;
constexpr std::int64_t kCouldNotConnect = 7;
constexpr std::int64_t kPartialBody = 18;
constexpr std::int64_t kTimedOut = 28;
constexpr std::int64_t kNothingReceived = 52;
constexpr std::int64_t kNotBelieved = 60;

class UrlSessionFaultsTest : public UrlSessionFixture {};

/// The task failed before any response, with this code.
void expectFailure(const Record& record, std::int64_t code) {
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->domain(), "libcurl");
    EXPECT_EQ(record.error->code(), code) << record.error->localizedDescription();
}

TEST_F(UrlSessionFaultsTest, AServerWithAStrangersCertificateIsNotBelieved) {
    std::atomic<bool> gotRequest = false;
    const TlsServer server(strangeAuthority().issue("IP:127.0.0.1"), [&](TlsConnection& connection) {
        gotRequest = !connection.readRequest().empty();
    });
    const Record record = fetch(server.url());
    expectFailure(record, kNotBelieved);
    EXPECT_NE(record.error->localizedDescription().find("127.0.0.1"), std::string::npos);
    EXPECT_FALSE(gotRequest);
}

TEST_F(UrlSessionFaultsTest, AServerWithAnotherHostsCertificateIsNotBelieved) {
    const TlsServer server(knownAuthority().issue("DNS:downloads.example,IP:127.0.0.2"),
                           answering(okResponse("no")));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionFaultsTest, AServerWithAnExpiredCertificateIsNotBelieved) {
    const TlsServer server(knownAuthority().issue("IP:127.0.0.1", Validity::expired),
                           answering(okResponse("no")));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionFaultsTest, ARedirectToAServerThatIsNotBelievedFails) {
    const TlsServer stranger(strangeAuthority().issue("IP:127.0.0.1"), answering(okResponse("no")));
    const TlsServer server(loopbackIdentity(),
                           answering("HTTP/1.1 307 Temporary Redirect\r\nLocation: " + stranger.url() +
                                     "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionFaultsTest, TheEnvironmentAddsNoAuthorityToTheSystems) {
    const TemporaryFolder folder;
    const EnvironmentVariable file("SSL_CERT_FILE", knownAuthorityFile());
    const EnvironmentVariable directory("SSL_CERT_DIR", folder.path());
    const EnvironmentVariable bundle("CURL_CA_BUNDLE", knownAuthorityFile());
    const TlsServer server(loopbackIdentity(), answering(okResponse("yes")));
    EXPECT_EQ(fetch(server.url()).body, "yes");
    trustAuthoritiesOf("");
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionFaultsTest, AnAuthorityOfOurOwnReplacesTheEnvironmentsAndTheSystems) {
    const TemporaryFolder folder;
    strangeAuthority().writeCertificate(folder.path() / "stranger.pem");
    const EnvironmentVariable file("SSL_CERT_FILE", folder.path() / "stranger.pem");
    const TlsServer server(strangeAuthority().issue("IP:127.0.0.1"), answering(okResponse("no")));
    expectFailure(fetch(server.url()), kNotBelieved);
}

TEST_F(UrlSessionFaultsTest, TheEnvironmentCannotHaveSessionKeysWritten) {
    const TlsServer server(loopbackIdentity(), answering(okResponse("secret")));
    EXPECT_EQ(fetch(server.url()).body, "secret");
    EXPECT_TRUE(!std::filesystem::exists(keyLogFile()) || contentsOf(keyLogFile()).empty());
}

TEST_F(UrlSessionFaultsTest, TheEnvironmentsOpenSslConfigurationDoesNotCount) {
    const TlsServer server(loopbackIdentity(), answering(okResponse("modern")));
    EXPECT_EQ(fetch(server.url()).body, "modern");
}

TEST_F(UrlSessionFaultsTest, TheEnvironmentsProxyIsUsedAndItsOwnAnswersAreNotTheResponse) {
    const std::string redirect = "HTTP/1.1 302 Found\r\nLocation: https://mirror.example:8443/engine\r\n"
                                 "Content-Length: 0\r\nConnection: close\r\n\r\n";
    const auto conversation = [&](TlsConnection& connection) {
        const bool isForMirror = connection.readRequest().find("Host: mirror.example") != std::string::npos;
        connection.send(isForMirror ? okResponse("by proxy") : redirect);
    };
    const TlsServer server(knownAuthority().issue("DNS:downloads.example,DNS:mirror.example"), conversation,
                           TlsServer::Manner::behindProxy);
    const EnvironmentVariable variable("https_proxy", "http://127.0.0.1:" + std::to_string(server.port()));
    const Record record = fetch("https://downloads.example:8443/engine");
    EXPECT_TRUE(server.proxyRequest().starts_with("CONNECT mirror.example:8443 HTTP/1.1\r\n"));
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 8);
    EXPECT_EQ(record.body, "by proxy");
}

TEST_F(UrlSessionFaultsTest, AProxyThatIsNotThereIsAnError) {
    const EnvironmentVariable variable("https_proxy", "http://proxy.invalid:3128");
    expectFailure(fetch("https://127.0.0.1:9/"), kProxyNotFound);
}

TEST_F(UrlSessionFaultsTest, AClosedPortIsAnError) {
    const ReservedPort reserved;
    const Record record = fetch("https://127.0.0.1:" + std::to_string(reserved.port()) + "/");
    expectFailure(record, kCouldNotConnect);
    EXPECT_NE(record.error->localizedDescription().find("127.0.0.1"), std::string::npos);
}

TEST_F(UrlSessionFaultsTest, AnUnknownHostIsAnErrorThatNamesIt) {
    const Record record = fetch("https://nowhere.invalid/engine");
    expectFailure(record, kHostNotFound);
    EXPECT_NE(record.error->localizedDescription().find("nowhere.invalid"), std::string::npos);
    EXPECT_EQ(record.error->debugDescription(),
              "Error Domain=libcurl Code=6 \"" + record.error->localizedDescription() + "\"");
}

TEST_F(UrlSessionFaultsTest, AnythingButHttpsIsRefused) {
    for (const std::string url :
         {"http://127.0.0.1:9/", "file:///etc/hostname", "ftp://127.0.0.1:9/", "127.0.0.1:9/"}) {
        SCOPED_TRACE(url);
        expectFailure(fetch(url), kUnsupportedProtocol);
    }
}

TEST_F(UrlSessionFaultsTest, AnInvalidUrlCompletesWithAnErrorOnTheSessionsQueue) {
    for (const std::string url : {"", "https://", "https://in valid/", "https://127.0.0.1:notaport/"}) {
        SCOPED_TRACE(url);
        const Record record = fetch(url);
        expectFailure(record, kMalformedUrl);
        EXPECT_NE(record.threads.front(), std::this_thread::get_id());
    }
}

TEST_F(UrlSessionFaultsTest, AConnectionDroppedHalfWayKeepsTheBytesSoFarAndIsAnError) {
    const TlsServer server(loopbackIdentity(), [](TlsConnection& connection) {
        connection.readRequest();
        connection.send(okHead(1000) + longText(500));
        connection.drop();
    });
    const Record record = fetch(server.url());
    EXPECT_EQ(record.expectedContentLength, 1000);
    EXPECT_EQ(record.body, longText(500));
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.calls.back(), "completion");
}

TEST_F(UrlSessionFaultsTest, ABodyThatEndsPolitelyButTooEarlyIsAnError) {
    const TlsServer server(loopbackIdentity(), answering(okHead(1000) + longText(999)));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.body, longText(999));
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), kPartialBody);
}

TEST_F(UrlSessionFaultsTest, ABodyInChunksThatIsCutOffIsAnError) {
    const TlsServer server(loopbackIdentity(),
                           answering("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                     "5\r\nbegun\r\n5\r\nend"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.body, "begunend");
    EXPECT_TRUE(record.error);
}

TEST_F(UrlSessionFaultsTest, MoreBytesThanAnnouncedAreNotDelivered) {
    const TlsServer server(loopbackIdentity(), answering(okHead(4) + "truelies"));
    EXPECT_EQ(fetch(server.url()).body, "true");
}

TEST_F(UrlSessionFaultsTest, AnEmptyAnswerIsAnError) {
    const TlsServer server(loopbackIdentity(), answering(""));
    expectFailure(fetch(server.url()), kNothingReceived);
}

TEST_F(UrlSessionFaultsTest, AServerThatLeavesWhileItIsWrittenToIsAnError) {
    const TlsServer server(loopbackIdentity(), [](TlsConnection& connection) { connection.drop(); });
    const Record record =
        fetch(UrlRequest{.url = server.url(), .httpMethod = "POST", .httpBody = longText(8'000'000)});
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    EXPECT_TRUE(record.error);
}

TEST_F(UrlSessionFaultsTest, ABodyThatStallsTimesOutAndKeepsTheBytesSoFar) {
    const TlsServer server(loopbackIdentity(), [](TlsConnection& connection) {
        connection.readRequest();
        connection.send(okHead(1000) + "begun");
        connection.waitForClientToLeave();
    });
    const Record record = fetch(UrlRequest{.url = server.url(), .timeoutInterval = std::chrono::seconds(2)});
    EXPECT_EQ(record.body, "begun");
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), kTimedOut);
    EXPECT_EQ(record.error->localizedDescription(), "The request timed out (127.0.0.1)");
}

TEST_F(UrlSessionFaultsTest, AnAnswerThatNeverBeginsTimesOut) {
    const TlsServer server(loopbackIdentity(), [](TlsConnection& connection) {
        connection.readRequest();
        connection.waitForClientToLeave();
    });
    expectFailure(fetch(UrlRequest{.url = server.url(), .timeoutInterval = std::chrono::seconds(1)}),
                  kTimedOut);
}

TEST_F(UrlSessionFaultsTest, AServerThatAcceptsButNeverSpeaksTimesOut) {
    const PlainListener silent;
    expectFailure(fetch(UrlRequest{.url = "https://127.0.0.1:" + std::to_string(silent.port()),
                                   .timeoutInterval = std::chrono::seconds(1)}),
                  kTimedOut);
}

TEST_F(UrlSessionFaultsTest, ASlowBodyThatNeverStallsForTheWholeLimitArrivesWhole) {
    constexpr int kPieces = 6;
    const TlsServer server(loopbackIdentity(), [](TlsConnection& connection) {
        connection.readRequest();
        connection.send(okHead(kPieces));
        Gate neverOpened; // six pauses of half a second, three seconds in all, against a limit of two
        for (int piece = 0; piece < kPieces; ++piece) {
            neverOpened.wait(std::chrono::milliseconds(500));
            connection.send("x");
        }
    });
    const Record record = fetch(UrlRequest{.url = server.url(), .timeoutInterval = std::chrono::seconds(2)});
    EXPECT_EQ(record.body, "xxxxxx");
    EXPECT_FALSE(record.error);
}

} // namespace

} // namespace orvane::test
