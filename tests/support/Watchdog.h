#pragma once

#include "tests/support/Gate.h"

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace orvane::test {

/// Ends the test program when the test that owns it has not ended in time: a test that hammers at something
/// may meet a deadlock, which no expectation inside it would ever report.
class Watchdog {
public:
    Watchdog()
        : thread_([over = over_] {
              if (!over.wait(2 * kPatience)) {
                  std::fputs("watchdog: the test hangs\n", stderr);
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

} // namespace orvane::test
