#include "platform/BoundedRequest.h"

#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"

namespace orvane::test {

namespace {

using platform::performRequest;
using platform::ResponseBody;
using Outcome = ResultType<Bytes>;

constexpr std::size_t kLargestBody = std::size_t{64} << 20;

class BoundedRequestTest : public UrlSessionFixture {};

/// Announces no length, so that only what arrives can be counted.
LoopbackServer::Conversation answeringAtLength(std::size_t length) {
    return [length](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
        const std::string piece(std::size_t{1} << 20, 'x');
        for (std::size_t left = length; left > 0;) {
            const std::size_t count = std::min(left, piece.size());
            if (!connection.send({piece.data(), count})) {
                return;
            }
            left -= count;
        }
    };
}

TEST_F(BoundedRequestTest, BringsTheWholeBody) {
    const LoopbackServer server(answering(okResponse("description")));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_FALSE(errorOf(outcome));
    EXPECT_EQ(textOf(std::get<Bytes>(outcome)), "description");
}

TEST_F(BoundedRequestTest, BringsAnEmptyBody) {
    const LoopbackServer server(answering(okResponse("")));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_FALSE(errorOf(outcome));
    EXPECT_TRUE(std::get<Bytes>(outcome).empty());
}

TEST_F(BoundedRequestTest, BringsTheBodyOfAnErrorStatus) {
    const LoopbackServer server(
        answering("HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\n<html></html>"));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_FALSE(errorOf(outcome));
    EXPECT_EQ(textOf(std::get<Bytes>(outcome)), "<html></html>");
}

TEST_F(BoundedRequestTest, BringsTheTransfersErrorAndNoBody) {
    const LoopbackServer server(answering(okHead(100) + "too little"));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_TRUE(errorOf(outcome));
    EXPECT_EQ(errorOf(outcome)->domain(), platformErrors().transferDomain);
}

TEST_F(BoundedRequestTest, GivesUpAtItsLimitAndALateAnswerDoesNoHarm) {
    Gate limitPassed;
    Gate clientHasLeft;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        limitPassed.wait();
        EXPECT_TRUE(connection.send(okResponse("late")));
        connection.waitForClientToLeave();
        clientHasLeft.open();
    });
    const Outcome outcome = performRequest({.url = server.url()}, std::chrono::milliseconds(200));
    ASSERT_TRUE(errorOf(outcome));
    EXPECT_EQ(errorOf(outcome)->domain(), "");
    EXPECT_EQ(errorOf(outcome)->code(), 408);
    EXPECT_EQ(errorOf(outcome)->localizedDescription(), "Request timeout");
    limitPassed.open();
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(BoundedRequestTest, TheRequestsOwnTimeOutIsATransfersError) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.waitForClientToLeave();
    });
    const Outcome outcome =
        performRequest({.url = server.url(), .timeoutInterval = std::chrono::seconds(1)}, kPatience);
    ASSERT_TRUE(errorOf(outcome));
    EXPECT_EQ(errorOf(outcome)->code(), platformErrors().timedOut);
}

TEST_F(BoundedRequestTest, SixtyFourMebibytesAreTheMost) {
    const LoopbackServer largest(answeringAtLength(kLargestBody));
    const Outcome accepted = performRequest({.url = largest.url()}, kPatience);
    ASSERT_FALSE(errorOf(accepted));
    EXPECT_EQ(std::get<Bytes>(accepted).size(), kLargestBody);

    const LoopbackServer tooLarge(answeringAtLength(kLargestBody + 1));
    const Outcome refused = performRequest({.url = tooLarge.url()}, kPatience);
    ASSERT_TRUE(errorOf(refused));
    EXPECT_EQ(errorOf(refused)->code(), 413);
}

TEST_F(BoundedRequestTest, ABodyThatIsDiscardedMayHaveAnySize) {
    const LoopbackServer server(answeringAtLength(kLargestBody + 1));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience, ResponseBody::discard);
    ASSERT_FALSE(errorOf(outcome));
    EXPECT_TRUE(std::get<Bytes>(outcome).empty());
}

TEST_F(BoundedRequestTest, ADiscardedBodyThatBreaksOffIsATransfersError) {
    const LoopbackServer server(answering(okHead(100) + "too little"));
    const Outcome outcome = performRequest({.url = server.url()}, kPatience, ResponseBody::discard);
    ASSERT_TRUE(errorOf(outcome));
    EXPECT_EQ(errorOf(outcome)->domain(), platformErrors().transferDomain);
}

} // namespace

} // namespace orvane::test
