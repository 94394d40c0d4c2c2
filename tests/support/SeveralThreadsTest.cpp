#include "tests/support/SeveralThreads.h"

#include <gtest/gtest-spi.h>
#include <stdexcept>

namespace orvane::test {

namespace {

void throwOnOneThread() {
    onSeveralThreads([](int thread) {
        if (thread == 2) {
            throw std::runtime_error("no such program");
        }
    });
}

void throwAnythingOnOneThread() {
    onSeveralThreads([](int thread) {
        if (thread == 1) {
            throw thread;
        }
    });
}

TEST(SeveralThreadsTest, AnExceptionFailsTheTestInsteadOfEndingTheProgram) {
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(throwOnOneThread(),
                                           "thread 2 ended with an exception: no such program");
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(throwAnythingOnOneThread(), "thread 1 ended with an exception");
}

} // namespace

} // namespace orvane::test
