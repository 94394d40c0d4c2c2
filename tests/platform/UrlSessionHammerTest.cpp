#include "tests/platform/UrlSessionFixture.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/SeveralThreads.h"
#include "tests/support/Watchdog.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {

namespace {

class UrlSessionHammerTest : public UrlSessionFixture {
protected:
    const Watchdog watchdog_;
};

TEST_F(UrlSessionHammerTest, SessionsThatComeAndGoUnusedLeaveNothingBehind) {
    makeSession(std::make_shared<RecordingDelegate>());
    const std::size_t before = openDescriptors();
    onSeveralThreads([](int /*thread*/) {
        for (int round = 0; round < 50; ++round) {
            const auto delegate = std::make_shared<RecordingDelegate>();
            const auto session = makeSession(delegate);
            session->dataTask({.url = "https://localhost:1/"});
        }
    });
    EXPECT_TRUE(openDescriptorsComeDownTo(before));
}

TEST_F(UrlSessionHammerTest, TasksLetGoOfInAnyStateCompleteOnceOrNeverBegan) {
    const LoopbackServer server(answering(okResponse(longText(20'000))));
    onSeveralThreads([&server](int thread) {
        for (int round = 0; round < 12; ++round) {
            const auto delegate = std::make_shared<RecordingDelegate>();
            auto session = makeSession(delegate);
            auto task = session->dataTask({.url = server.url()});
            const int way = (round + thread) % 4;
            if (way != 0) {
                task->resume();
            }
            if (way == 2) {
                task->cancel();
            }
            if (way == 3) {
                session.reset();
            }
            task.reset();
            session.reset();
            if (way == 0) {
                EXPECT_TRUE(delegate->record().calls.empty());
                continue;
            }
            EXPECT_TRUE(delegate->waitForCompletions());
            const std::vector<std::string> calls = delegate->record().calls;
            EXPECT_EQ(std::count(calls.begin(), calls.end(), "completion"), 1);
            EXPECT_EQ(calls.back(), "completion");
        }
    });
}

TEST_F(UrlSessionHammerTest, OneTaskResumedSuspendedAndCancelledFromSeveralThreadsCompletesOnce) {
    const LoopbackServer server(answering(okResponse(longText(200'000))));
    for (int round = 0; round < 10; ++round) {
        const auto delegate = std::make_shared<RecordingDelegate>();
        const auto session = makeSession(delegate);
        const auto task = session->dataTask({.url = server.url()});
        onSeveralThreads([&task, round](int thread) {
            for (int turn = 0; turn < 20; ++turn) {
                if ((turn + thread) % 2 == 0) {
                    task->suspend();
                } else {
                    task->resume();
                }
            }
            if (thread == 0 && round % 2 == 0) {
                task->cancel();
            }
            task->resume();
        });
        EXPECT_TRUE(delegate->waitForCompletions());
        const Record record = delegate->record();
        EXPECT_EQ(std::count(record.calls.begin(), record.calls.end(), "completion"), 1);
        EXPECT_FALSE(record.callsOverlapped);
        EXPECT_TRUE(record.error || record.body.size() == 200'000);
    }
}

TEST_F(UrlSessionHammerTest, ADelegateThatGoesWhileCallsComeIsNeverCalledAfterwards) {
    const LoopbackServer server(answering(okResponse(longText(200'000))));
    for (int round = 0; round < 10; ++round) {
        auto delegate = std::make_shared<RecordingDelegate>();
        const auto session = makeSession(delegate);
        for (int count = 0; count < kSeveralThreads; ++count) {
            session->dataTask({.url = server.url()})->resume();
        }
        EXPECT_TRUE(delegate->waitForBodyBytes(1));
        delegate.reset();
    }
}

} // namespace

} // namespace orvane::test
