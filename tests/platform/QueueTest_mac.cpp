#include "platform/Queue.h"

#include "platform/Queue_mac.h"
#include "tests/support/Gate.h"

#include <atomic>
#include <gtest/gtest.h>
#include <pthread.h>
#include <vector>

namespace orvane::test {

namespace {

// Tests run on a thread of their own, while the main thread attends to its queue.

TEST(QueueTest, ItemsOfTheMainQueueRunOnTheMainThread) {
    EXPECT_EQ(::pthread_main_np(), 0);
    Gate done;
    int isMainThread = 0;
    platform::mainQueueAsync([&] {
        isMainThread = ::pthread_main_np();
        done.open();
    });
    EXPECT_TRUE(done.wait());
    EXPECT_EQ(isMainThread, 1);
}

TEST(QueueTest, ItemsOfTheMainQueueRunInTheirOrder) {
    constexpr int kItems = 1000;
    std::vector<int> order;
    for (int item = 0; item < kItems; ++item) {
        platform::mainQueueAsync([&order, item] { order.push_back(item); });
    }
    platform::runOnMainThreadAndWait([] {});
    ASSERT_EQ(order.size(), std::size_t{kItems});
    for (int item = 0; item < kItems; ++item) {
        EXPECT_EQ(order[static_cast<std::size_t>(item)], item);
    }
}

TEST(QueueTest, OneItemOfTheMainQueueRunsAtATime) {
    int step = 0;
    int stepBehind = 0;
    platform::mainQueueAsync([&] {
        platform::mainQueueAsync([&] { stepBehind = ++step; });
        ++step;
        ++step;
    });
    platform::runOnMainThreadAndWait([] {}); // through the first item, which has submitted the second
    platform::runOnMainThreadAndWait([] {});
    EXPECT_EQ(stepBehind, 3);
}

TEST(QueueTest, WhoWaitsForTheMainThreadFindsItsWorkDone) {
    int isMainThread = 0;
    platform::runOnMainThreadAndWait([&] { isMainThread = ::pthread_main_np(); });
    EXPECT_EQ(isMainThread, 1);
}

TEST(QueueTest, OnTheMainThreadThereIsNoWaiting) {
    bool isDone = false;
    platform::runOnMainThreadAndWait([&] { platform::runOnMainThreadAndWait([&] { isDone = true; }); });
    EXPECT_TRUE(isDone);
}

TEST(QueueTest, ItemsOfTheUtilityQueueRunSideBySideAndNotOnTheMainThread) {
    Gate firstRuns;
    Gate secondRuns;
    Gate bothMet;
    std::atomic<int> mainThreads = 0;
    platform::utilityQueueAsync([&] {
        mainThreads += ::pthread_main_np();
        firstRuns.open();
        EXPECT_TRUE(secondRuns.wait());
        bothMet.open();
    });
    platform::utilityQueueAsync([&] {
        EXPECT_TRUE(firstRuns.wait());
        mainThreads += ::pthread_main_np();
        secondRuns.open();
    });
    EXPECT_TRUE(bothMet.wait());
    EXPECT_EQ(mainThreads, 0);
}

} // namespace

} // namespace orvane::test
