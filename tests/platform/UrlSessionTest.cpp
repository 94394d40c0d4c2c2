#include "platform/SharedField.h"
#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"

#include <algorithm>
#include <array>

namespace orvane::test {

namespace {

using platform::UrlRequest;

class UrlSessionTest : public UrlSessionFixture {};

/// Answers a request for /start with `first` and any other with `second`.
LoopbackServer::Conversation answeringByPath(const std::string& first, const std::string& second) {
    return [first, second](LoopbackConnection& connection) {
        const std::string request = connection.readRequest();
        connection.send(request.starts_with("GET /start ") ? first : second);
    };
}

/// The latest request that a server got.
class SharedRequest {
public:
    LoopbackServer::Conversation keepingConversation() {
        return [this](LoopbackConnection& connection) {
            text_.store(connection.readRequest());
            connection.send(okResponse("kept"));
        };
    }
    std::string text() const { return text_.load(); }

private:
    SharedField<std::string> text_;
};

TEST_F(UrlSessionTest, DeliversTheResponseThenTheBodyThenTheCompletion) {
    const LoopbackServer server(answering(okResponse("engine")));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 6);
    EXPECT_EQ(record.body, "engine");
    EXPECT_FALSE(record.error);
}

TEST_F(UrlSessionTest, DeliversALongBodyWholeAndInPieces) {
    const std::string body = longText(3'000'000);
    const LoopbackServer server(answering(okResponse(body)));
    const Record record = fetch(server.url());
    EXPECT_GT(record.calls.size(), 3U); // the response, more than one piece, the completion
    EXPECT_TRUE(record.body == body);
    EXPECT_FALSE(record.error);
}

TEST_F(UrlSessionTest, DeliversAPieceWhileTheServerStillHoldsBackTheRest) {
    Gate rest;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(10) + "first");
        rest.wait();
        connection.send("other");
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForBodyBytes(5));
    EXPECT_EQ(delegate->record().body, "first");
    rest.open();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().body, "firstother");
}

TEST_F(UrlSessionTest, DeliversTheResponseBeforeAnyOfTheBodyHasArrived) {
    Gate body;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(4));
        body.wait();
        connection.send("late");
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->whenResponseArrives = [&](auto&) { body.open(); };
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().body, "late");
}

TEST_F(UrlSessionTest, ExpectsNoLengthWhereNoneIsAnnounced) {
    const LoopbackServer server(answering("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nuntil the end"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.expectedContentLength, -1);
    EXPECT_EQ(record.body, "until the end");
    EXPECT_FALSE(record.error);
}

TEST_F(UrlSessionTest, ExpectsNoLengthOfABodyInChunks) {
    const LoopbackServer server(answering("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n"
                                          "Connection: close\r\n\r\n"
                                          "3\r\none\r\n4\r\n two\r\n0\r\nTrailer: yes\r\n\r\n"));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls.front(), "response");
    EXPECT_EQ(std::count(record.calls.begin(), record.calls.end(), "response"), 1);
    EXPECT_EQ(record.expectedContentLength, -1);
    EXPECT_EQ(record.body, "one two");
}

TEST_F(UrlSessionTest, DecodesACodedBodyAndExpectsNoLengthOfIt) {
    // "hello, hello, hello" in the gzip format
    constexpr std::array<unsigned char, 29> kCoded{0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0xff,
                                                   0xcb, 0x48, 0xcd, 0xc9, 0xc9, 0xd7, 0x51, 0xc8, 0x40, 0xa2,
                                                   0x00, 0x9f, 0xa1, 0xca, 0x09, 0x13, 0x00, 0x00, 0x00};
    const std::string body(kCoded.begin(), kCoded.end());
    const LoopbackServer server(answering(
        "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: " + std::to_string(body.size()) +
        "\r\nConnection: close\r\n\r\n" + body));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.expectedContentLength, -1);
    EXPECT_EQ(record.body, "hello, hello, hello");
    EXPECT_FALSE(record.error);
}

TEST_F(UrlSessionTest, AnEmptyBodyStillBringsItsResponseFirst) {
    const LoopbackServer server(answering(okResponse("")));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 0);
    EXPECT_FALSE(record.error);
}

TEST_F(UrlSessionTest, AnErrorStatusIsAnAnswerLikeAnyOther) {
    for (const std::string status : {"404 Not Found", "500 Internal Server Error", "301 Moved Permanently"}) {
        const LoopbackServer server(answering("HTTP/1.1 " + status +
                                              "\r\nContent-Length: 4\r\n"
                                              "Connection: close\r\n\r\npage"));
        const Record record = fetch(server.url());
        EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"})) << status;
        EXPECT_EQ(record.body, "page") << status;
        EXPECT_FALSE(record.error) << status;
    }
}

TEST_F(UrlSessionTest, APreliminaryResponseIsNotTheResponse) {
    const LoopbackServer server(
        answering("HTTP/1.1 103 Early Hints\r\nContent-Length: 9\r\n\r\n" + okResponse("final")));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 5);
    EXPECT_EQ(record.body, "final");
}

TEST_F(UrlSessionTest, FollowsARedirectAndDeliversOnlyWhereItLeads) {
    const LoopbackServer server(answeringByPath(redirectTo("/end"), okResponse("arrived")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url("/start")});
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    const Record record = delegate->record();
    EXPECT_EQ(record.calls, (std::vector<std::string>{"response", "data", "completion"}));
    EXPECT_EQ(record.expectedContentLength, 7);
    EXPECT_EQ(record.body, "arrived");
    EXPECT_EQ(task->originalRequestUrl(), server.url("/start"));
}

TEST_F(UrlSessionTest, RedirectsWithoutEndAreAnError) {
    const LoopbackServer server(answering(redirectTo("/again")));
    const Record record = fetch(server.url());
    EXPECT_EQ(record.calls, std::vector<std::string>{"completion"});
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), platformErrors().tooManyRedirects);
}

TEST_F(UrlSessionTest, AGetCarriesNeitherBodyNorStrangeHeaders) {
    SharedRequest request;
    const LoopbackServer server(request.keepingConversation());
    fetch(server.url("/downloadinstaller?os=darwin&product=varlen"));
    const std::string head = request.text();
    EXPECT_TRUE(head.starts_with("GET /downloadinstaller?os=darwin&product=varlen HTTP/1.1\r\n")) << head;
    EXPECT_TRUE(head.ends_with("\r\n\r\n")) << head;
    EXPECT_EQ(head.find("Content-"), std::string::npos) << head;
    EXPECT_NE(head.find("\r\nAccept-Encoding: "), std::string::npos) << head;
}

TEST_F(UrlSessionTest, APostCarriesItsHeaderAndBodyExactly) {
    SharedRequest request;
    const LoopbackServer server(request.keepingConversation());
    const std::string body = std::string("{\"a\": 1}\0\r\n", 11) + longText(2'000'000);
    const Record record = fetch(UrlRequest{.url = server.url("/crashreport"),
                                           .httpMethod = "POST",
                                           .httpHeaderFields = {{"Content-Type", "application/json"}},
                                           .httpBody = body});
    EXPECT_FALSE(record.error);
    const std::string text = request.text();
    const std::size_t headEnd = text.find("\r\n\r\n");
    ASSERT_NE(headEnd, std::string::npos);
    const std::string head = text.substr(0, headEnd);
    EXPECT_TRUE(head.starts_with("POST /crashreport HTTP/1.1\r\n")) << head;
    EXPECT_NE(head.find("\r\nContent-Type: application/json"), std::string::npos) << head;
    EXPECT_EQ(head.find("Expect"), std::string::npos) << head;
    EXPECT_TRUE(text.substr(headEnd + 4) == body);
}

TEST_F(UrlSessionTest, AnotherMethodIsSentAsItIsNamed) {
    SharedRequest request;
    const LoopbackServer server(request.keepingConversation());
    fetch(UrlRequest{.url = server.url(), .httpMethod = "DELETE"});
    EXPECT_TRUE(request.text().starts_with("DELETE / HTTP/1.1\r\n"));
    fetch(UrlRequest{.url = server.url(), .httpMethod = "PUT", .httpBody = "whole"});
    EXPECT_TRUE(request.text().starts_with("PUT / HTTP/1.1\r\n"));
    EXPECT_TRUE(request.text().ends_with("\r\n\r\nwhole"));
    EXPECT_FALSE(fetch(UrlRequest{.url = server.url(), .httpMethod = "HEAD"}).error);
    EXPECT_TRUE(request.text().starts_with("HEAD / HTTP/1.1\r\n"));
}

TEST_F(UrlSessionTest, AHeaderWithoutValueIsSent) {
    SharedRequest request;
    const LoopbackServer server(request.keepingConversation());
    fetch(UrlRequest{.url = server.url(), .httpHeaderFields = {{"X-Empty", ""}}});
    const std::string text = request.text();
    const std::size_t name = text.find("\r\nX-Empty:");
    ASSERT_NE(name, std::string::npos) << text;
    const std::size_t value = text.find(':', name) + 1;
    EXPECT_EQ(text.find_first_not_of(' ', value), text.find("\r\n", value)) << text;
}

} // namespace

} // namespace orvane::test
