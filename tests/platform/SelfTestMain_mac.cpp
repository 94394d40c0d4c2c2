#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

/// The tests run on a thread of their own; the main thread attends to its queue, as in the program with the
/// window.
int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    std::thread([] {
        const int result = RUN_ALL_TESTS();
        std::fflush(nullptr);
        std::_Exit(result); // what the main thread uses stays
    }).detach();
    CFRunLoopRun();
}
