#include "tests/support/Watchdog.h"

#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace {

/// Longer than any test waits by itself.
constexpr std::chrono::seconds kLongestTest{180};

/// What a program without a bundle has in place of the bundle's Info.plist. Its transport rules would not
/// admit the tests' server, which has no certificate; the product's bundle asks for no such exception.
[[gnu::used, gnu::section("__TEXT,__info_plist")]] constexpr char kInfoPlist[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>CFBundleIdentifier</key>
    <string>kestrix.orvane.bootstrap.self-test</string>
    <key>NSAppTransportSecurity</key>
    <dict>
        <key>NSAllowsArbitraryLoads</key>
        <true/>
    </dict>
</dict>
</plist>
)";

} // namespace

/// The tests run on a thread of their own; the main thread attends to its queue, as in the program with the
/// window.
int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new orvane::test::WatchdogListener(kLongestTest));
    std::thread([] {
        const int result = RUN_ALL_TESTS();
        std::fflush(nullptr);
        std::_Exit(result); // what the main thread uses stays
    }).detach();
    CFRunLoopRun();
}
