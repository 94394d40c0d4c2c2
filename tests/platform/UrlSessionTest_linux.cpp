#include "platform/PlainHttp.h"
#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/PlainListener.h"

#include <atomic>
#include <set>

namespace orvane::test {

namespace {

using platform::UrlRequest;

// CURLcode values, as log lines show them
constexpr std::int64_t kMalformedUrl = 3;

/// What this platform's sessions promise beyond the others'.
class UrlSessionDetailsTest : public UrlSessionFixture {};

void expectFailure(const Record& record, std::int64_t code) {
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->domain(), "libcurl");
    EXPECT_EQ(record.error->code(), code) << record.error->localizedDescription();
}

TEST_F(UrlSessionDetailsTest, TwentyRedirectsInARowAreTheMost) {
    std::atomic<int> redirectsToGive = 20;
    const auto conversation = [&](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(redirectsToGive-- > 0 ? redirectTo("/again") : okResponse("at last"));
    };
    const LoopbackServer server(conversation);
    EXPECT_EQ(fetch(server.url()).body, "at last");
    redirectsToGive = 21;
    expectFailure(fetch(server.url()), platformErrors().tooManyRedirects);
}

/// Goes on with `line` for as long as the client reads, up to 64 MiB.
LoopbackServer::Conversation repeating(const std::string& beginning, const std::string& line) {
    return [beginning, line](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(beginning);
        std::string lines;
        while (lines.size() < std::size_t{64} << 10) {
            lines += line;
        }
        for (int count = 0; count < 1024 && connection.send(lines); ++count) {
        }
    };
}

TEST_F(UrlSessionDetailsTest, TrailersWithoutEndAreAnErrorAfterTheBody) {
    const LoopbackServer server(repeating("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                          "4\r\nbody\r\n0\r\n",
                                          "Trailer: " + std::string(1000, 'x') + "\r\n"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.body, "body");
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->domain(), "OrvaneBootstrap");
    EXPECT_EQ(record.error->code(), 431);
    EXPECT_EQ(record.error->localizedDescription(),
              "The answer's headers and trailers are larger than 512 KiB");
}

/// The library has a limit of its own for what precedes the body.
TEST_F(UrlSessionDetailsTest, PreliminaryResponsesWithoutEndAreAnError) {
    const LoopbackServer server(
        repeating("", "HTTP/1.1 103 Early Hints\r\nLink: " + std::string(1000, 'x') + "\r\n\r\n"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_TRUE(record.error->localizedDescription().starts_with("Too large response headers"))
        << record.error->localizedDescription();
}

TEST_F(UrlSessionDetailsTest, HeadersAndTrailersOfUsualSizeAreNoError) {
    const std::string field = ": " + std::string(1000, 'x') + "\r\n";
    std::string response = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n";
    for (int count = 0; count < 100; ++count) {
        response += "Header" + field;
    }
    response += "\r\n4\r\nbody\r\n0\r\n";
    for (int count = 0; count < 100; ++count) {
        response += "Trailer" + field;
    }
    const LoopbackServer server(answering(response + "\r\n"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_FALSE(record.error);
}

std::string movedTo(const std::string& locationLines, const std::string& body) {
    return "HTTP/1.1 302 Found\r\n" + locationLines + "Content-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

TEST_F(UrlSessionDetailsTest, ARedirectToNowhereIsAResponseLikeAnyOther) {
    for (const std::string location : {"Location:\r\n", "Location: \r\n", "Location: \t \r\n",
                                       "Location: \v\r\n", "Location: \r\nLocation:\r\n"}) {
        SCOPED_TRACE(location);
        const LoopbackServer server(answering(movedTo(location, "page")));
        const Record record = fetch(server.url());
        EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
        EXPECT_EQ(record.expectedContentLength, 4);
        EXPECT_EQ(record.body, "page");
        EXPECT_FALSE(record.error);

        const LoopbackServer empty(answering(movedTo(location, "")));
        EXPECT_EQ(fetch(empty.url()).calls, (std::vector<std::string>{"response", "completion"}));
    }
}

TEST_F(UrlSessionDetailsTest, ARedirectToNowhereCanBeRefused) {
    for (const std::string body : {"page", ""}) {
        const LoopbackServer server(answering(movedTo("Location:\r\n", body)));
        const auto delegate = std::make_shared<RecordingDelegate>();
        delegate->disposition = platform::ResponseDisposition::cancel;
        const auto session = makeSession(delegate);
        session->dataTask({.url = server.url()})->resume();
        EXPECT_TRUE(delegate->waitForCompletions());
        EXPECT_EQ(delegate->record().calls, (std::vector<std::string>{"response", "completion"}));
        ASSERT_TRUE(delegate->record().error);
        EXPECT_EQ(delegate->record().error->code(), platformErrors().cancelled);
    }
}

TEST_F(UrlSessionDetailsTest, TheFirstLocationThatIsNotBlankIsFollowedOrRefused) {
    std::atomic<int> requests = 0;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(requests++ == 0 ? movedTo("Location:\r\nLocation: /end\r\n", "")
                                        : okResponse("arrived"));
    });
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.body, "arrived");

    const LoopbackServer leavesHttps(
        answering(movedTo("Location: \r\nLocation: http://127.0.0.1/\r\n", "page")));
    const Record refused = fetch(leavesHttps.url());
    EXPECT_EQ(refused.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->domain(), "OrvaneBootstrap.Url");
}

TEST_F(UrlSessionDetailsTest, AnInvalidUrlHasACodeOfItsOwn) {
    for (const std::string url : {"https://", "https://in valid/", "https://127.0.0.1:notaport/"}) {
        SCOPED_TRACE(url);
        expectFailure(fetch(url), kMalformedUrl);
    }
}

TEST_F(UrlSessionDetailsTest, AnErrorNamesTheHost) {
    const ReservedPort reserved;
    const Record closed = fetch("https://127.0.0.1:" + std::to_string(reserved.port()) + "/");
    ASSERT_TRUE(closed.error);
    EXPECT_NE(closed.error->localizedDescription().find("127.0.0.1"), std::string::npos);
    const Record unknown = fetch("https://nowhere.invalid/engine");
    ASSERT_TRUE(unknown.error);
    EXPECT_NE(unknown.error->localizedDescription().find("nowhere.invalid"), std::string::npos);
    EXPECT_EQ(unknown.error->debugDescription(),
              "Error Domain=libcurl Code=6 \"" + unknown.error->localizedDescription() + "\"");
}

TEST_F(UrlSessionDetailsTest, ATimeOutAndACancellationAreSaidInWordsOfOurOwn) {
    const PlainListener silent;
    const Record timedOut =
        fetch(UrlRequest{.url = "https://127.0.0.1:" + std::to_string(silent.port()) + "/",
                         .timeoutInterval = std::chrono::seconds(1)});
    ASSERT_TRUE(timedOut.error);
    EXPECT_EQ(timedOut.error->localizedDescription(), "The request timed out (127.0.0.1)");

    const LoopbackServer server(answering(okResponse("refused")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->disposition = platform::ResponseDisposition::cancel;
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    ASSERT_TRUE(delegate->record().error);
    EXPECT_EQ(delegate->record().error->localizedDescription(), "The request was cancelled (127.0.0.1)");
}

/// Test programs for a Mac admit such addresses; no linkage but theirs does.
TEST_F(UrlSessionDetailsTest, TheProductsLinkageSpeaksNoPlainHttpEvenToLoopback) {
    EXPECT_EQ(platform::plainHttpPrefix(), "");
    const LoopbackServer server(answering(okResponse("plain")));
    const std::string url = "http://127.0.0.1:" + std::to_string(server.port()) + "/";
    const LoopbackServer redirecting(answering(redirectTo(url)));
    for (const std::string& start : {url, redirecting.url()}) {
        SCOPED_TRACE(start);
        const Record record = fetch(start);
        EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
        ASSERT_TRUE(record.error);
        EXPECT_EQ(record.error->localizedDescription(),
                  "The address \"" + url + "\" is refused: it does not begin with https:");
    }
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(UrlSessionDetailsTest, AllCallsComeOnOneThread) {
    constexpr std::size_t kTasks = 8;
    const LoopbackServer server(answering(okResponse(longText(300'000))));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    for (std::size_t count = 0; count < kTasks; ++count) {
        session->dataTask({.url = server.url()})->resume();
    }
    EXPECT_TRUE(delegate->waitForCompletions(kTasks));
    const Record record = delegate->record();
    EXPECT_EQ(std::set<std::thread::id>(record.threads.begin(), record.threads.end()).size(), 1U);
}

} // namespace

} // namespace orvane::test
