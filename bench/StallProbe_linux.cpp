#include "bench/StallProbe.h"

#include "platform/Queue.h"

#include <QCoreApplication>

#include <chrono>
#include <semaphore>
#include <thread>

namespace orvane::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenProbes(1);

struct Watch {
    Stalls stalls;
    std::binary_semaphore eventHadItsTurn{0};
    std::binary_semaphore itemHadItsTurn{0};
};

void note(std::atomic<double>& longest, Clock::time_point posted) {
    const double waited = std::chrono::duration<double>(Clock::now() - posted).count();
    if (waited > longest) {
        longest = waited;
    }
}

void watch(const std::shared_ptr<Watch>& watch) {
    while (true) {
        const auto posted = Clock::now();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [watch, posted] {
                note(watch->stalls.longestEventWait, posted);
                watch->eventHadItsTurn.release();
            },
            Qt::QueuedConnection);
        platform::mainQueueAsync([watch, posted] {
            note(watch->stalls.longestItemWait, posted);
            watch->itemHadItsTurn.release();
        });
        watch->eventHadItsTurn.acquire();
        watch->itemHadItsTurn.acquire();
        std::this_thread::sleep_for(kBetweenProbes);
    }
}

} // namespace

std::shared_ptr<const Stalls> watchMainThread() {
    auto shared = std::make_shared<Watch>();
    platform::utilityQueueAsync([shared] { watch(shared); });
    return {shared, &shared->stalls};
}

} // namespace orvane::bench
