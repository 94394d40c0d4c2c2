#include "tests/demo/ServiceEnd.h"
#include "tests/tools/ToolRun.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

Ending runMessage(const std::vector<std::string>& arguments) { return runTool(ORVANE_MESSAGE, arguments); }

TEST(OrvaneMessageTest, DeliversOneMessage) {
    test::ServiceEnd service;
    EXPECT_EQ(runMessage({service.name(), "step", "Téléchargement"}).status, 0);
    EXPECT_EQ(service.receive(), (std::pair<std::int32_t, std::string>(1, "Téléchargement")));
}

TEST(OrvaneMessageTest, TellsFailuresApartByItsStatus) {
    EXPECT_EQ(runMessage({}).status, 64);
    EXPECT_EQ(runMessage({"kestrix.orvane.bootstrap.nobody0000", "progress", "x"}).status, 65);
    EXPECT_EQ(runMessage({"kestrix.orvane.bootstrap.nobody0000", "step", "x"}).status, 69);
}

TEST(OrvaneMessageTest, PrintsItsHelp) {
    const Ending ending = runMessage({"--help"});
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.output.substr(0, 22), "Usage: orvane-message ");
}

} // namespace
} // namespace orvane::tools
