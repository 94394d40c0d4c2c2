#include "platform/WindowPresence.h"

#include <gtest/gtest.h>

namespace orvane::test {

namespace {

using platform::WindowPresence;

TEST(WindowPresenceTest, AWindowThatWasNotShownYetIsNotBroughtIn) {
    const WindowPresence presence;
    EXPECT_FALSE(presence.mayComeBack(false));
    EXPECT_FALSE(presence.mayComeBack(true)); // the consent is being asked for
}

TEST(WindowPresenceTest, AShownWindowComesBackUnlessAnAlertIsOpen) {
    WindowPresence presence;
    presence.show();
    EXPECT_TRUE(presence.mayComeBack(false));
    EXPECT_FALSE(presence.mayComeBack(true));
}

TEST(WindowPresenceTest, AWithdrawnWindowStaysAway) {
    WindowPresence presence;
    presence.show();
    presence.withdraw();
    EXPECT_FALSE(presence.mayComeBack(false));
    EXPECT_FALSE(presence.mayComeBack(true));
}

} // namespace

} // namespace orvane::test
