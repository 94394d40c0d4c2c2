#pragma once

#include "tests/support/Gate.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

namespace orvane::test {

inline std::string nameOf(const testing::TestInfo& test) {
    return std::string(test.test_suite_name()) + "." + test.name();
}

/// Ends the test program, naming the test, when the test that owns it has not ended in time: a test that
/// hammers at something may meet a deadlock, which no expectation inside it would ever report.
class Watchdog {
public:
    explicit Watchdog(std::chrono::milliseconds limit = 2 * kPatience)
        : Watchdog(nameOf(*testing::UnitTest::GetInstance()->current_test_info()), limit) {}

    Watchdog(std::string test, std::chrono::milliseconds limit)
        : thread_([over = over_, test = std::move(test), limit] {
              if (!over.wait(limit)) {
                  std::fprintf(stderr, "watchdog: %s hangs\n", test.c_str());
                  std::abort();
              }
          }) {}
    ~Watchdog() {
        over_.open();
        thread_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    const Gate over_;
    std::thread thread_;
};

/// Watches every test of a program that no other program watches, set-up and tear-down included.
class WatchdogListener final : public testing::EmptyTestEventListener {
public:
    explicit WatchdogListener(std::chrono::milliseconds limit) : limit_(limit) {}

    void OnTestStart(const testing::TestInfo& test) override {
        watchdog_ = std::make_unique<Watchdog>(nameOf(test), limit_);
    }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { watchdog_.reset(); }

private:
    const std::chrono::milliseconds limit_;
    std::unique_ptr<Watchdog> watchdog_;
};

} // namespace orvane::test
