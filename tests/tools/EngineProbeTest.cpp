#include "tools/EngineProbe.h"

#include "tests/support/TemporaryFolder.h"
#include "tools/ProgramFormat.h"
#include "tools/ToolError.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

class EngineProbeTest : public testing::Test {
protected:
    /// The failure for an engine with these contents, or the version that it is published under.
    std::string outcomeFor(const std::string& engine) {
        test::writeFile(options_.input, engine);
        try {
            return checkedEngineVersion(options_);
        } catch (const ToolError& error) {
            EXPECT_EQ(error.status(), ExitStatus::badData);
            return std::string(error.what()).substr(options_.input.string().size() + 1);
        }
    }

    test::TemporaryFolder folder_;
    PublishOptions options_{.input = folder_.path() / "engine",
                            .plainEngine = {},
                            .version = {},
                            .baseUrl = {},
                            .folder = {},
                            .system = thisSystem()};
};

TEST_F(EngineProbeTest, AsksTheEngineForItsVersion) {
    EXPECT_EQ(outcomeFor("#!/bin/sh\necho; echo 14.2.7; echo \"$#\" \"$1\" >&2; [ \"$*\" = --version ]\n"),
              "14.2.7");
    options_.version = "14.2.7";
    EXPECT_EQ(outcomeFor("#!/bin/sh\necho 14.2.7\n"), "14.2.7");
}

TEST_F(EngineProbeTest, RefusesAnotherVersionThanTheOneToPublish) {
    options_.version = "14.3";
    EXPECT_EQ(outcomeFor("#!/bin/sh\necho 14.2.7\n"), "--version prints 14.2.7, but --version says 14.3");
}

TEST_F(EngineProbeTest, RefusesAnEngineThatPrintsNoVersion) {
    EXPECT_EQ(outcomeFor("#!/bin/sh\nprintf '14.2.7\\r\\n'\n"),
              "--version prints \"14.2.7\r\", not a dotted version such as 14.2.7");
    EXPECT_EQ(outcomeFor("#!/bin/sh\n"), "--version prints \"\", not a dotted version such as 14.2.7");
}

TEST_F(EngineProbeTest, EndsAnEngineThatDoesNotEnd) {
    options_.versionWait = std::chrono::seconds(1);
    EXPECT_EQ(outcomeFor("#!/bin/sh\ntrap '' TERM INT\nsleep 600\n"),
              "--version did not end within 1 seconds; it must print the version and exit");
}

TEST_F(EngineProbeTest, RefusesWhatCannotBeRunHere) {
    EXPECT_EQ(outcomeFor("#!/nowhere/interpreter\n"),
              "cannot be run here; --no-run publishes it without running it");
    options_.run = false;
    options_.version = "14.2.7";
    EXPECT_EQ(outcomeFor("#!/nowhere/interpreter\n"), "14.2.7");
}

TEST_F(EngineProbeTest, RefusesWhatIsNoProgramForTheSystem) {
    EXPECT_EQ(outcomeFor("<html></html>"), "is not an executable: unknown file signature");
    options_.system = "linux-arm64";
    std::string header("\x7F"
                       "ELF\2\1",
                       6);
    header.resize(64);
    header[16] = 2;
    header[18] = 62;
    EXPECT_EQ(outcomeFor(header), "is a Linux program for amd64, not for linux-arm64 (see --system)");
}

TEST_F(EngineProbeTest, RefusesAMissingFile) {
    try {
        checkedEngineVersion(options_);
        ADD_FAILURE() << "nothing failed";
    } catch (const ToolError& error) {
        EXPECT_EQ(error.status(), ExitStatus::noInput);
    }
}

} // namespace
} // namespace orvane::tools
