#include "platform/WindowUpdates.h"

#include "platform/Queue.h"
#include "tests/support/Gate.h"
#include "tests/support/TestDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <optional>
#include <thread>
#include <vector>

namespace orvane::test {
namespace {

constexpr int kMany = 10 * static_cast<int>(platform::kMostUpdatesWaiting);

class WindowUpdatesTest : public testing::Test {
protected:
    ~WindowUpdatesTest() override {
        if (submitter.joinable()) {
            submitter.join();
        }
    }

    void submit(const int& subject, int number) {
        platform::submitUpdate(&subject, [this, number] { ran.push_back(number); });
    }

    /// Submits the numbers up to `kMany` on a thread of its own, as fast as it may.
    void startSubmitting() {
        submitter = std::thread([this] {
            for (int number = 0; number < kMany; ++number) {
                submit(step, number);
                ++submitted;
                platform::waitForRoom();
            }
            done.open();
        });
    }

    void awaitFullBacklog() const {
        while (submitted < static_cast<int>(platform::kMostUpdatesWaiting)) {
            std::this_thread::yield();
        }
    }

    const int step = 0;
    const int error = 0;
    TestDesktop desktop;
    std::vector<int> ran;
    std::atomic<int> submitted = 0;
    Gate done; ///< open when the submitter has submitted everything
    std::thread submitter;
};

TEST_F(WindowUpdatesTest, EveryUpdateRunsOnceAndInItsOrderAndFewWait) {
    startSubmitting();
    std::size_t mostWaiting = 0;
    desktop.runMainQueueUntil([this, &mostWaiting] {
        mostWaiting = std::max(mostWaiting, desktop.waitingMainItems());
        return ran.size() == kMany;
    });
    std::vector<int> inOrder(kMany);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    EXPECT_EQ(ran, inOrder);
    EXPECT_LE(mostWaiting, platform::kMostUpdatesWaiting);
}

TEST_F(WindowUpdatesTest, AThreadThatSubmitsTooMuchWaitsForTheMainThread) {
    startSubmitting();
    awaitFullBacklog();
    EXPECT_EQ(desktop.waitingMainItems(), platform::kMostUpdatesWaiting);
    desktop.runMainQueueUntil([this] { return ran.size() == kMany; });
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
}

TEST_F(WindowUpdatesTest, AThreadThatWaitsForRoomGoesOnOnceTheQueueIsHeld) {
    startSubmitting();
    awaitFullBacklog();
    const platform::MainQueueHold hold;
    EXPECT_TRUE(done.wait());
}

TEST_F(WindowUpdatesTest, WhileTheQueueIsHeldOneUpdateOfEachSubjectWaits) {
    const platform::MainQueueHold hold;
    for (int number = 0; number < kMany; ++number) {
        submit(step, number);
        submit(error, -number);
        platform::waitForRoom();
    }
    EXPECT_EQ(desktop.waitingMainItems(), 2U);
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{kMany - 1, -(kMany - 1)}));
}

TEST_F(WindowUpdatesTest, WhatWaitedBeforeAHoldKeepsItsValue) {
    submit(step, 1);
    const platform::MainQueueHold hold;
    submit(step, 2);
    submit(step, 3);
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 3}));
}

TEST_F(WindowUpdatesTest, AfterAHoldOrderAndNumberAreKeptAgain) {
    std::optional<platform::MainQueueHold> hold(std::in_place);
    submit(step, 1);
    hold.reset();
    submit(step, 2);
    submit(step, 3);
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST_F(WindowUpdatesTest, AHoldLeavesTheUpdatesOfAnEarlierOneAlone) {
    std::optional<platform::MainQueueHold> hold(std::in_place);
    submit(step, 1);
    hold.reset();
    submit(step, 2);
    hold.emplace();
    submit(step, 3);
    submit(step, 4);
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 4}));
}

TEST_F(WindowUpdatesTest, TheQueueIsHeldUntilTheLastOfSeveralHoldsEnds) {
    std::optional<platform::MainQueueHold> inner(std::in_place);
    const platform::MainQueueHold outer;
    inner.reset();
    submit(step, 1);
    submit(step, 2);
    EXPECT_EQ(desktop.waitingMainItems(), 1U);
}

TEST_F(WindowUpdatesTest, AnUpdateThatRunsIsNotReplaced) {
    const platform::MainQueueHold hold;
    platform::submitUpdate(&step, [this] {
        submit(step, 2);
        ran.push_back(1);
    });
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

TEST_F(WindowUpdatesTest, ItemsSubmittedElsewhereKeepTheirPlaceAmongThem) {
    submit(step, 1);
    platform::mainQueueAsync([this] { ran.push_back(2); });
    submit(step, 3);
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST(WindowUpdatesEndTest, UpdatesThatAreDroppedTakeNoRoom) {
    const int subject = 0;
    {
        const TestDesktop desktop;
        for (std::size_t number = 0; number < platform::kMostUpdatesWaiting; ++number) {
            platform::submitUpdate(&subject, [] { FAIL() << "ran although it was dropped"; });
        }
    }
    platform::waitForRoom();
}

} // namespace
} // namespace orvane::test
