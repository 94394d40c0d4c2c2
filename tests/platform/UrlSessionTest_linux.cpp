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
