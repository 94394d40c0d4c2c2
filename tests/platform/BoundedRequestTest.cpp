#include "platform/BoundedRequest.h"

#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"

namespace orvane::test {

namespace {

using platform::performRequest;
using platform::RequestOutcome;

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
    const RequestOutcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_TRUE(outcome.body);
    EXPECT_EQ(textOf(*outcome.body), "description");
    EXPECT_FALSE(outcome.error);
}

TEST_F(BoundedRequestTest, BringsAnEmptyBody) {
    const LoopbackServer server(answering(okResponse("")));
    const RequestOutcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_TRUE(outcome.body);
    EXPECT_TRUE(outcome.body->empty());
}

TEST_F(BoundedRequestTest, BringsTheBodyOfAnErrorStatus) {
    const LoopbackServer server(
        answering("HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\n<html></html>"));
    const RequestOutcome outcome = performRequest({.url = server.url()}, kPatience);
    ASSERT_TRUE(outcome.body);
    EXPECT_EQ(textOf(*outcome.body), "<html></html>");
}

TEST_F(BoundedRequestTest, BringsTheTransfersErrorAndNoBody) {
    const LoopbackServer server(answering(okHead(100) + "too little"));
    const RequestOutcome outcome = performRequest({.url = server.url()}, kPatience);
    EXPECT_FALSE(outcome.body);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->domain(), platformErrors().transferDomain);
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
    const RequestOutcome outcome = performRequest({.url = server.url()}, std::chrono::milliseconds(200));
    EXPECT_FALSE(outcome.body);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->domain(), "");
    EXPECT_EQ(outcome.error->code(), 408);
    EXPECT_EQ(outcome.error->localizedDescription(), "Request timeout");
    limitPassed.open();
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(BoundedRequestTest, TheRequestsOwnTimeOutIsATransfersError) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.waitForClientToLeave();
    });
    const RequestOutcome outcome =
        performRequest({.url = server.url(), .timeoutInterval = std::chrono::seconds(1)}, kPatience);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->code(), platformErrors().timedOut);
}

TEST_F(BoundedRequestTest, SixtyFourMebibytesAreTheMost) {
    const LoopbackServer largest(answeringAtLength(kLargestBody));
    const RequestOutcome accepted = performRequest({.url = largest.url()}, kPatience);
    ASSERT_TRUE(accepted.body);
    EXPECT_EQ(accepted.body->size(), kLargestBody);

    const LoopbackServer tooLarge(answeringAtLength(kLargestBody + 1));
    const RequestOutcome refused = performRequest({.url = tooLarge.url()}, kPatience);
    EXPECT_FALSE(refused.body);
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->code(), 413);
}

} // namespace

} // namespace orvane::test
