#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace orvane::test {

inline constexpr int kSeveralThreads = 4;

/// Runs `work` on several threads at once, each with a number of its own, and waits for them. An exception
/// that leaves `work` fails the test; on a bare thread it would end the test program.
inline void onSeveralThreads(const std::function<void(int)>& work) {
    const auto guarded = [&work](int number) {
        try {
            work(number);
        } catch (const std::exception& error) {
            ADD_FAILURE() << "thread " << number << " ended with an exception: " << error.what();
        } catch (...) {
            ADD_FAILURE() << "thread " << number << " ended with an exception";
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < kSeveralThreads; ++number) {
        threads.emplace_back(guarded, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace orvane::test
