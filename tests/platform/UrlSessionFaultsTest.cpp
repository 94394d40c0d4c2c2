#include "platform/Url.h"
#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/PlainListener.h"

#include <string>
#include <thread>

namespace orvane::test {

namespace {

using platform::UrlRequest;

class UrlSessionFaultsTest : public UrlSessionFixture {};

/// The task failed before any response, with this code.
void expectFailure(const Record& record, std::int64_t code) {
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->domain(), platformErrors().transferDomain);
    EXPECT_EQ(record.error->code(), code) << record.error->localizedDescription();
}

TEST_F(UrlSessionFaultsTest, AClosedPortIsAnError) {
    const ReservedPort reserved;
    expectFailure(fetch("https://127.0.0.1:" + std::to_string(reserved.port()) + "/"),
                  platformErrors().couldNotConnect);
}

TEST_F(UrlSessionFaultsTest, AnUnknownHostIsAnError) {
    expectFailure(fetch("https://nowhere.invalid/engine"), platformErrors().hostNotFound);
}

TEST_F(UrlSessionFaultsTest, AnInvalidUrlCompletesWithAnErrorOnTheSessionsQueue) {
    for (const std::string url : {"", "https://", "https://in valid/", "https://127.0.0.1:notaport/"}) {
        SCOPED_TRACE(url);
        const Record record = fetch(url);
        EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
        EXPECT_TRUE(record.error);
        EXPECT_NE(record.threads.front(), std::this_thread::get_id());
    }
}

/// The task ended before any response, and the error says which address nobody was asked for.
void expectRefusal(const Record& record, const std::string& url) {
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->localizedDescription(), refusalOfAddress(url).value().localizedDescription());
}

TEST_F(UrlSessionFaultsTest, AnythingButHttpsIsRefused) {
    const PlainListener listener;
    const std::string place = "localhost:" + std::to_string(listener.port()) + "/";
    for (const std::string& url :
         {"http://" + place, std::string("file:///etc/hostname"), "ftp://" + place, place}) {
        SCOPED_TRACE(url);
        expectRefusal(fetch(url), url);
    }
}

TEST_F(UrlSessionFaultsTest, FollowsNoRedirectThatLeavesHttps) {
    for (const std::string target : {"http://localhost:9/", "file:///etc/hostname", "ftp://127.0.0.1:9/"}) {
        SCOPED_TRACE(target);
        const LoopbackServer server(answering(redirectTo(target)));
        expectRefusal(fetch(server.url()), target);
    }
}

TEST_F(UrlSessionFaultsTest, FollowsNoSecondRedirectThatLeavesHttps) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        const bool isFirst = connection.readRequest().find("GET /again ") == std::string::npos;
        connection.send(redirectTo(isFirst ? "/again" : "http://localhost:9/end"));
    });
    expectRefusal(fetch(server.url()), "http://localhost:9/end");
}

TEST_F(UrlSessionFaultsTest, AConnectionDroppedHalfWayKeepsTheBytesSoFarAndIsAnError) {
    const LoopbackServer server([](LoopbackConnection& connection) {
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
    const LoopbackServer server(answering(okHead(1000) + longText(999)));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.body, longText(999));
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), platformErrors().bodyTooShort);
}

TEST_F(UrlSessionFaultsTest, ABodyInChunksThatIsCutOffIsAnError) {
    const LoopbackServer server(answering("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                          "5\r\nbegun\r\n5\r\nend"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.body, "begunend");
    EXPECT_TRUE(record.error);
}

TEST_F(UrlSessionFaultsTest, MoreBytesThanAnnouncedAreNotDelivered) {
    const LoopbackServer server(answering(okHead(4) + "truelies"));
    EXPECT_EQ(fetch(server.url()).body, "true");
}

TEST_F(UrlSessionFaultsTest, AnEmptyAnswerIsAnError) {
    const LoopbackServer server(answering(""));
    expectFailure(fetch(server.url()), platformErrors().nothingReceived);
}

TEST_F(UrlSessionFaultsTest, AServerThatLeavesWhileItIsWrittenToIsAnError) {
    const LoopbackServer server([](LoopbackConnection& connection) { connection.drop(); });
    const Record record =
        fetch(UrlRequest{.url = server.url(), .httpMethod = "POST", .httpBody = longText(8'000'000)});
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    EXPECT_TRUE(record.error);
}

TEST_F(UrlSessionFaultsTest, ABodyThatStallsTimesOutAndKeepsTheBytesSoFar) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(1000) + "begun");
        connection.waitForClientToLeave();
    });
    const Record record = fetch(UrlRequest{.url = server.url(), .timeoutInterval = std::chrono::seconds(2)});
    EXPECT_EQ(record.body, "begun");
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), platformErrors().timedOut);
}

TEST_F(UrlSessionFaultsTest, AnAnswerThatNeverBeginsTimesOut) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.waitForClientToLeave();
    });
    expectFailure(fetch(UrlRequest{.url = server.url(), .timeoutInterval = std::chrono::seconds(1)}),
                  platformErrors().timedOut);
}

TEST_F(UrlSessionFaultsTest, AServerThatAcceptsButNeverSpeaksTimesOut) {
    const PlainListener silent;
    expectFailure(fetch(UrlRequest{.url = "https://127.0.0.1:" + std::to_string(silent.port()),
                                   .timeoutInterval = std::chrono::seconds(1)}),
                  platformErrors().timedOut);
}

TEST_F(UrlSessionFaultsTest, ASlowBodyThatNeverStallsForTheWholeLimitArrivesWhole) {
    constexpr int kPieces = 6;
    const LoopbackServer server([](LoopbackConnection& connection) {
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
