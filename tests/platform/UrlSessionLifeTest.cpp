#include "tests/platform/UrlSessionFixture.h"

#include <algorithm>
#include <atomic>
#include <set>

namespace orvane::test {

namespace {

using platform::UrlSession;
using platform::UrlSessionDataTask;

class UrlSessionLifeTest : public UrlSessionFixture {};

/// Sends one half of ten bytes, waits at a gate and sends the other.
LoopbackServer::Conversation pausingHalfWay(Gate& gate) {
    return [&gate](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okHead(10) + "first");
        gate.wait();
        connection.send("other");
    };
}

TEST_F(UrlSessionLifeTest, CallsComeOneAtATimeAndNotOnTheCallersThread) {
    constexpr std::size_t kTasks = 8;
    const std::string body = longText(300'000);
    const LoopbackServer server(answering(okResponse(body)));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    for (std::size_t count = 0; count < kTasks; ++count) {
        session->dataTask({.url = server.url()})->resume();
    }
    EXPECT_TRUE(delegate->waitForCompletions(kTasks));
    const Record record = delegate->record();
    EXPECT_FALSE(record.callsOverlapped);
    EXPECT_EQ(record.body.size(), kTasks * body.size());
    const std::set<std::thread::id> threads(record.threads.begin(), record.threads.end());
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST_F(UrlSessionLifeTest, TheTaskOfACallIsTheOneThatWasAskedFor) {
    const LoopbackServer server(answering(okResponse("identity")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    std::vector<UrlSessionDataTask*> seen;
    const auto remember = [&](UrlSessionDataTask& task) { seen.push_back(&task); };
    delegate->whenResponseArrives = delegate->whenDataArrives = delegate->whenCompleted = remember;
    const auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(seen, (std::vector<UrlSessionDataTask*>{task.get(), task.get(), task.get()}));
}

TEST_F(UrlSessionLifeTest, ATaskThatNobodyResumesDoesNothing) {
    const LoopbackServer server(answering(okResponse("only")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    const auto idle = session->dataTask({.url = server.url("/idle")});
    session->dataTask({.url = server.url("/busy")})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(server.connectionCount(), 1);
    EXPECT_EQ(idle->originalRequestUrl(), server.url("/idle"));
}

TEST_F(UrlSessionLifeTest, ASecondTaskRunsAfterTheFirstHasEnded) {
    const LoopbackServer server(answering(okResponse("once")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions(1));
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions(2));
    EXPECT_EQ(delegate->record().body, "onceonce");
}

TEST_F(UrlSessionLifeTest, ADelegateMayStartAnotherTaskFromWithin) {
    const LoopbackServer server(answering(okResponse("again")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    std::atomic<bool> started = false;
    delegate->whenCompleted = [&](auto&) {
        if (!started.exchange(true)) {
            session->dataTask({.url = server.url()})->resume();
        }
    };
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions(2));
    EXPECT_EQ(delegate->record().body, "againagain");
}

TEST_F(UrlSessionLifeTest, ATransferOutlivesItsSession) {
    Gate gate;
    const LoopbackServer server(pausingHalfWay(gate));
    const auto delegate = std::make_shared<RecordingDelegate>();
    auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForBodyBytes(5));
    session.reset();
    gate.open();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().body, "firstother");
    EXPECT_FALSE(delegate->record().error);
}

TEST_F(UrlSessionLifeTest, ATaskThatIsKeptStartsEvenAfterItsSession) {
    const LoopbackServer server(answering(okResponse("late")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto task = makeSession(delegate)->dataTask({.url = server.url()});
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(delegate->record().body, "late");
}

TEST_F(UrlSessionLifeTest, ASessionMayEndFromWithinItsDelegate) {
    const LoopbackServer server(answering(okResponse("end")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    auto session = makeSession(delegate);
    const auto task = session->dataTask({.url = server.url()});
    delegate->whenDataArrives = [&](auto&) { session.reset(); };
    task->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_FALSE(delegate->record().error);
}

/// Leaves the connection open for another request, and reports when the client has closed it.
LoopbackServer::Conversation answeringUntilTheClientLeaves(Gate& clientHasLeft) {
    return [&clientHasLeft](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nkept");
        connection.waitForClientToLeave();
        clientHasLeft.open();
    };
}

TEST_F(UrlSessionLifeTest, ASessionThatEndsAfterItsTasksLeavesNothingBehind) {
    Gate clientHasLeft;
    const LoopbackServer server(answeringUntilTheClientLeaves(clientHasLeft));
    const LoopbackServer other(answering(okResponse("other")));
    const auto delegate = std::make_shared<RecordingDelegate>();
    auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_EQ(fetch(other.url()).body, "other"); // gives the first session's thread the time to fall asleep
    session.reset();
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(UrlSessionLifeTest, ASessionThatEndsBeforeItsTasksLeavesNothingBehind) {
    Gate clientHasLeft;
    const LoopbackServer server(answeringUntilTheClientLeaves(clientHasLeft));
    const auto delegate = std::make_shared<RecordingDelegate>();
    makeSession(delegate)->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForCompletions());
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(UrlSessionLifeTest, WithoutItsDelegateATransferStillRunsToItsEnd) {
    Gate gate;
    Gate clientHasLeft;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        pausingHalfWay(gate)(connection);
        connection.waitForClientToLeave();
        clientHasLeft.open();
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    const auto session = makeSession(delegate);
    session->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(delegate->waitForBodyBytes(5));
    delegate.reset();
    gate.open();
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(UrlSessionLifeTest, ADelegateThatWasNeverThereChangesNothing) {
    Gate clientHasLeft;
    const LoopbackServer server([&](LoopbackConnection& connection) {
        connection.readRequest();
        connection.send(okResponse("dropped"));
        connection.waitForClientToLeave();
        clientHasLeft.open();
    });
    UrlSession::create({}, {})->dataTask({.url = server.url()})->resume();
    EXPECT_TRUE(clientHasLeft.wait());
}

TEST_F(UrlSessionLifeTest, SessionsThatComeAndGoCompleteEachTaskOnce) {
    constexpr int kRounds = 100;
    const LoopbackServer server(answering(okResponse(longText(40'000))));
    std::vector<std::shared_ptr<RecordingDelegate>> delegates;
    for (int round = 0; round < kRounds; ++round) {
        delegates.push_back(std::make_shared<RecordingDelegate>());
        const auto session = makeSession(delegates.back());
        const auto task = session->dataTask({.url = server.url()});
        task->resume();
        if (round % 3 == 1) {
            task->cancel();
        } else if (round % 3 == 2) {
            task->suspend();
            task->resume();
        }
    }
    for (const auto& delegate : delegates) {
        EXPECT_TRUE(delegate->waitForCompletions());
        const Record record = delegate->record();
        EXPECT_EQ(std::count(record.calls.begin(), record.calls.end(), "completion"), 1);
        EXPECT_EQ(record.calls.back(), "completion");
    }
}

} // namespace

} // namespace orvane::test
