#include "platform/PacedMainQueue.h"

#include "platform/Queue.h"
#include "tests/support/Gate.h"
#include "tests/support/TestDesktop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>
#include <vector>

namespace orvane::test {
namespace {

constexpr int kMany = 1000;
constexpr std::size_t kMostWaiting = 8;

/// Submits many items on a thread of its own, as fast as it may.
class PacedMainQueueTest : public testing::Test {
protected:
    ~PacedMainQueueTest() override {
        if (submitter.joinable()) {
            submitter.join();
        }
    }

    void startSubmitting() {
        submitter = std::thread([this] {
            for (int number = 0; number < kMany; ++number) {
                queue.submit([this, number] { ran.push_back(number); });
                if (++submitted > static_cast<int>(kMostWaiting)) {
                    wentOn.open();
                }
            }
        });
    }

    TestDesktop desktop;
    platform::PacedMainQueue queue{kMostWaiting};
    std::vector<int> ran;
    std::atomic<int> submitted = 0;
    Gate wentOn; ///< open when one more item was submitted than may wait
    std::thread submitter;
};

TEST_F(PacedMainQueueTest, EveryItemRunsOnceAndInItsOrderAndFewWait) {
    startSubmitting();
    std::size_t mostWaiting = 0;
    desktop.runMainQueueUntil([this, &mostWaiting] {
        mostWaiting = std::max(mostWaiting, desktop.waitingMainItems());
        return ran.size() == kMany;
    });
    std::vector<int> inOrder(kMany);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    EXPECT_EQ(ran, inOrder);
    EXPECT_LE(mostWaiting, kMostWaiting);
}

TEST_F(PacedMainQueueTest, WhoSubmitsTooMuchWaitsForTheMainThread) {
    startSubmitting();
    while (submitted < static_cast<int>(kMostWaiting)) {
        std::this_thread::yield();
    }
    EXPECT_EQ(desktop.waitingMainItems(), kMostWaiting);
    desktop.runMainQueueUntil([this] { return ran.size() == kMany; });
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
}

TEST_F(PacedMainQueueTest, WhoWaitsGoesOnWhenHalfOfTheItemsHadTheirTurn) {
    startSubmitting();
    while (submitted < static_cast<int>(kMostWaiting)) {
        std::this_thread::yield();
    }
    desktop.runMainQueueUntil([this] { return ran.size() == kMostWaiting / 2; });
    EXPECT_TRUE(wentOn.wait());
    desktop.runMainQueueUntil([this] { return ran.size() == kMany; });
}

TEST_F(PacedMainQueueTest, ItemsSubmittedElsewhereKeepTheirPlaceAmongThem) {
    queue.submit([this] { ran.push_back(1); });
    platform::mainQueueAsync([this] { ran.push_back(2); });
    queue.submit([this] { ran.push_back(3); });
    desktop.drainMainQueue();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST(PacedMainQueueEndTest, ItemsThatAreDroppedHoldNobodyUp) {
    platform::PacedMainQueue queue(1);
    int ran = 0;
    {
        const TestDesktop desktop;
        queue.submit([&ran] { ++ran; });
    }
    const TestDesktop desktop;
    queue.submit([&ran] { ++ran; });
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(desktop.waitingMainItems(), 1U);
}

} // namespace
} // namespace orvane::test
