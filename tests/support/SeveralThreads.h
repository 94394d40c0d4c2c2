#pragma once

#include <functional>
#include <thread>
#include <vector>

namespace orvane::test {

inline constexpr int kSeveralThreads = 4;

/// Runs `work` on several threads at once, each with a number of its own, and waits for them.
inline void onSeveralThreads(const std::function<void(int)>& work) {
    std::vector<std::thread> threads;
    for (int number = 0; number < kSeveralThreads; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace orvane::test
