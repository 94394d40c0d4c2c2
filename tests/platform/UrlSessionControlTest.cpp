#include "tests/platform/PlatformErrors.h"
#include "tests/platform/UrlSessionFixture.h"

#include <algorithm>

namespace orvane::test {

namespace {

using platform::ResponseDisposition;
using platform::UrlSession;
using platform::UrlSessionDataTask;

class UrlSessionControlTest : public UrlSessionFixture {};

void expectCancelled(const Record& record) {
    EXPECT_EQ(std::count(record.calls.begin(), record.calls.end(), "completion"), 1);
    ASSERT_TRUE(record.error);
    EXPECT_EQ(record.error->code(), platformErrors().cancelled);
}

TEST_F(UrlSessionControlTest, ARefusedResponseBringsNoDataAndEndsWithAnError) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(10) + "first");
        connection.waitForClientToLeave();
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->disposition = ResponseDisposition::cancel;
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().calls, (std::vector<std::string>{"response", "completion"}));
    expectCancelled(delegate->record());
}

TEST_F(UrlSessionControlTest, CancellingFromWithinEndsTheTransfer) {
    const LoopbackServer server(answering(okResponse(longText(3'000'000))));
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->whenDataArrives = [](UrlSessionDataTask& task) { task.cancel(); };
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().calls, (std::vector<std::string>{"response", "data", "completion"}));
    expectCancelled(delegate->record());
}

TEST_F(UrlSessionControlTest, CancellingFromAnotherThreadEndsTheTransfer) {
    const LoopbackServer server([](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(10) + "first");
        connection.waitForClientToLeave();
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    task->resume();
    EXPECT_TRUE(delegate->waitForBodyBytes(5));
    task->cancel();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().body, "first");
    expectCancelled(delegate->record());
}

TEST_F(UrlSessionControlTest, CancellingBeforeTheStartCompletesWithoutAConnection) {
    const LoopbackServer server(answering(okResponse("never")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    task->cancel();
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().calls, std::vector<std::string>{"completion"});
    expectCancelled(delegate->record());
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(UrlSessionControlTest, CancellingAfterTheEndChangesNothing) {
    const LoopbackServer server(answering(okResponse("done")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    task->cancel();
    task->resume();
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions(2));
    EXPECT_EQ(delegate->record().body, "donedone");
}

TEST_F(UrlSessionControlTest, ASuspendedTaskReceivesNothingUntilItIsResumed) {
    const std::string body = longText(500'000);
    Gate suspended;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        if (!connection.readRequest().starts_with("GET /long ")) {
            connection.send(okResponse("short"));
            return;
        }
        connection.send(okHead(body.size()) + body.substr(0, 5));
        suspended.wait();
        connection.send(body.substr(5));
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->whenDataArrives = [&](UrlSessionDataTask& task) {
        if (delegate->record().body.size() == 5) {
            task.suspend();
        }
    };
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url("/long")});
    task->resume();
    EXPECT_TRUE(delegate->waitForBodyBytes(5));
    suspended.open();
    // Another task of the same queue comes and goes, and nothing but its own five bytes arrives.
    session->dataTask({.url = server.url("/short")})->resume();
    EXPECT_TRUE(delegate->waitForCompletions(1));
    EXPECT_EQ(delegate->record().body, body.substr(0, 5) + "short");
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions(2));
    EXPECT_TRUE(delegate->record().body == body.substr(0, 5) + "short" + body.substr(5));
    EXPECT_FALSE(delegate->record().error);
}

/// A task with a limit of two seconds is suspended until another's limit of three has run out.
class UrlSessionPauseTest : public UrlSessionControlTest {
protected:
    std::shared_ptr<UrlSessionDataTask> suspendForLongerThanTheLimit(const std::string& url,
                                                                     Gate& isUnderWay) {
        auto task = session_->dataTask({.url = url, .timeoutInterval = std::chrono::seconds(2)});
        task->resume();
        EXPECT_TRUE(isUnderWay.wait());
        task->suspend();
        session_->dataTask({.url = silent_.url(), .timeoutInterval = std::chrono::seconds(3)})->resume();
        EXPECT_TRUE(delegate_->waitForCompletions(1));
        EXPECT_EQ(delegate_->record().error->code(), platformErrors().timedOut);
        EXPECT_EQ(delegate_->record().body, "");
        return task;
    }

    const std::shared_ptr<RecordingDelegate> delegate_ = std::make_shared<RecordingDelegate>();
    const std::unique_ptr<UrlSession> session_ = makeSession(delegate_);

private:
    const LoopbackServer silent_{[](LoopbackConnection& connection) {
        connection.readRequest();
        connection.waitForClientToLeave();
    }};
};

TEST_F(UrlSessionPauseTest, TimeDoesNotRunForATaskThatIsSuspendedBeforeItsAnswer) {
    Gate requestArrived;
    Gate answer;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        requestArrived.open();
        answer.wait();
        connection.send(okResponse("patient"));
    });
    const LoopbackServer quick(answering(okResponse("quick ")));
    suspendForLongerThanTheLimit(server.url(), requestArrived)->resume();
    // When this one is through, the session has looked at the resumed task and found no reason to end it.
    session_->dataTask({.url = quick.url()})->resume();
    EXPECT_TRUE(delegate_->waitForCompletions(2));
    answer.open();
    EXPECT_TRUE(delegate_->waitForCompletions(3));
    EXPECT_EQ(delegate_->record().body, "quick patient");
    EXPECT_FALSE(delegate_->record().error);
}

TEST_F(UrlSessionPauseTest, TimeDoesNotRunForATaskThatIsSuspendedBeforeItsBody) {
    const LoopbackServer server(answering(okResponse("patient")));
    Gate responseArrived;
    delegate_->whenResponseArrives = [&](UrlSessionDataTask& task) {
        task.suspend();
        responseArrived.open();
    };
    suspendForLongerThanTheLimit(server.url(), responseArrived)->resume();
    EXPECT_TRUE(delegate_->waitForCompletions(2));
    EXPECT_EQ(delegate_->record().body, "patient");
    EXPECT_FALSE(delegate_->record().error);
}

TEST_F(UrlSessionPauseTest, TimeDoesNotRunBetweenTheCommandToGoOnAndItsExecution) {
    const LoopbackServer server(answering(okResponse("patient")));
    const LoopbackServer quick(answering(okResponse("quick ")));
    Gate responseArrived;
    delegate_->whenResponseArrives = [&](UrlSessionDataTask& task) {
        task.suspend();
        responseArrived.open();
    };
    const auto task = suspendForLongerThanTheLimit(server.url(), responseArrived);
    // From here the session cannot obey before it has looked once more for tasks whose time is up.
    delegate_->whenResponseArrives = [&task](UrlSessionDataTask&) { task->resume(); };
    session_->dataTask({.url = quick.url()})->resume();
    EXPECT_TRUE(delegate_->waitForCompletions(3));
    EXPECT_EQ(delegate_->record().body, "quick patient");
    EXPECT_FALSE(delegate_->record().error);
}

TEST_F(UrlSessionPauseTest, ATaskThatIsSuspendedBeforeItsStartBeginsWhenItIsResumed) {
    const LoopbackServer server(answering(okResponse("begun ")));
    const auto held = session_->dataTask({.url = server.url("/held")});
    delegate_->whenCompleted = [&](UrlSessionDataTask& completed) {
        if (completed.originalRequestUrl() == server.url("/first")) {
            held->resume(); // on the session's own queue, which therefore cannot begin it in between
            held->suspend();
        }
    };
    for (const std::size_t number : {1U, 2U}) {
        session_->dataTask({.url = server.url(number == 1 ? "/first" : "/second")})->resume();
        EXPECT_TRUE(delegate_->waitForCompletions(number));
    }
    EXPECT_EQ(server.connectionCount(), 2);
    held->resume();
    EXPECT_TRUE(delegate_->waitForCompletions(3));
    EXPECT_EQ(delegate_->record().body, "begun begun begun ");
}

TEST_F(UrlSessionControlTest, ATaskMayBeCommandedFromManyThreadsAtOnce) {
    const LoopbackServer server(answering(okResponse(longText(1'000'000))));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    constexpr int kCommanders = 4;
    std::vector<std::thread> commanders;
    commanders.reserve(kCommanders);
    for (int commander = 0; commander < kCommanders; ++commander) {
        commanders.emplace_back([&task] {
            for (int command = 0; command < 200; ++command) {
                task->suspend();
                task->resume();
            }
        });
    }
    for (std::thread& commander : commanders) {
        commander.join();
    }
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_TRUE(delegate->record().body == longText(1'000'000));
}

} // namespace

} // namespace orvane::test
