#include "tools/Progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvane::tools {
namespace {

TEST(ProgressLineTest, IsWrittenOverAndGoneInTheEnd) {
    std::ostringstream terminal;
    {
        ProgressLine line(terminal);
        line.show("reading", std::nullopt);
        line.show("fetching", 0.429);
    }
    EXPECT_EQ(terminal.str(), "\r\x1b[Kreading\r\x1b[Kfetching 42 %\r\x1b[K");
}

TEST(ProgressLineTest, IsNotWrittenAgainWhileNothingChanges) {
    std::ostringstream terminal;
    ProgressLine line(terminal);
    line.show("fetching", 0.421);
    line.show("fetching", 0.422);
    EXPECT_EQ(terminal.str(), "\r\x1b[Kfetching 42 %");
}

TEST(ProgressLineTest, ThatWasNeverShownLeavesTheTerminalAlone) {
    std::ostringstream terminal;
    { const ProgressLine line(terminal); }
    EXPECT_EQ(terminal.str(), "");
}

} // namespace
} // namespace orvane::tools
