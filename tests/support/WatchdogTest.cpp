#include "tests/support/Watchdog.h"

#include "tests/support/DeathTest.h"

namespace orvane::test {

namespace {

using namespace std::chrono_literals;

class WatchdogTest : public DeathTest {};

TEST_F(WatchdogTest, ATestThatHangsEndsTheProgramByName) {
    const auto hang = [] {
        const Watchdog watchdog(1ms);
        Gate().wait();
    };
    EXPECT_DEATH(hang(), "watchdog: WatchdogTest.ATestThatHangsEndsTheProgramByName hangs");
}

TEST_F(WatchdogTest, TheListenerWatchesATestFromItsStartToItsEnd) {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const auto hang = [&test] {
        WatchdogListener listener(1ms);
        listener.OnTestStart(test);
        Gate().wait();
    };
    EXPECT_DEATH(hang(), "watchdog: WatchdogTest.TheListenerWatchesATestFromItsStartToItsEnd hangs");

    WatchdogListener listener(kPatience);
    listener.OnTestStart(test);
    listener.OnTestEnd(test);
}

} // namespace

} // namespace orvane::test
