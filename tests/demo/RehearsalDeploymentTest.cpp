#include "demo/RehearsalDeployment.h"
#include "platform/Process.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;

class RehearsalDeploymentTest : public testing::Test {
protected:
    Rehearsal read(const std::string& document) {
        test::writeFile(folder_.path() / "rehearsal.json", document);
        return readRehearsal(folder_.path());
    }

    std::string failureOf(const std::string& document) {
        try {
            read(document);
        } catch (const RehearsalError& error) {
            return error.what();
        }
        return "no failure";
    }

    test::TemporaryFolder folder_;
};

constexpr char kSmallest[] =
    R"({"apiOrigin": "https://localhost:8443", "certificateAuthority": "/v/ca.pem"})";

TEST_F(RehearsalDeploymentTest, LiesInItsFolderAndTalksToItsVendor) {
    const Rehearsal rehearsal = read(kSmallest);
    EXPECT_EQ(rehearsal.deployment.engineRoot, folder_.path() / "opt");
    EXPECT_EQ(rehearsal.deployment.logRoot, folder_.path() / "Library/Kestrix");
    EXPECT_EQ(rehearsal.deployment.fileDescriptionUrl,
              "https://localhost:8443/downloadinstaller?os=darwin&product=varlen");
    EXPECT_EQ(rehearsal.deployment.crashReportUrl, "https://localhost:8443/crashreport");
    EXPECT_EQ(rehearsal.certificateAuthority, "/v/ca.pem");
}

TEST_F(RehearsalDeploymentTest, IsTheProductsInEverythingElse) {
    const Deployment deployment = read(kSmallest).deployment;
    const Deployment& product = productDeployment();
    EXPECT_EQ(deployment.productWord, product.productWord);
    EXPECT_EQ(deployment.serviceNamePrefix, product.serviceNamePrefix);
    EXPECT_EQ(deployment.fileDescriptionWait, product.fileDescriptionWait);
    EXPECT_EQ(deployment.downloadTimeout, product.downloadTimeout);
    EXPECT_EQ(deployment.crashReportWait, product.crashReportWait);
    EXPECT_EQ(deployment.crashReportTimeout, product.crashReportTimeout);
}

TEST_F(RehearsalDeploymentTest, TakesShorterWaits) {
    const Deployment deployment = read(R"({"apiOrigin": "https://h.invalid", "certificateAuthority": "c",
        "fileDescriptionWaitSeconds": 1, "downloadTimeoutSeconds": 2, "crashReportWaitSeconds": 3})")
                                      .deployment;
    EXPECT_EQ(deployment.fileDescriptionWait, 1s);
    EXPECT_EQ(deployment.downloadTimeout, 2s);
    EXPECT_EQ(deployment.crashReportWait, 3s);
}

TEST_F(RehearsalDeploymentTest, IsRefusedWithAReason) {
    EXPECT_EQ(failureOf("["), (folder_.path() / "rehearsal.json").string() + " is not a JSON object");
    EXPECT_EQ(failureOf(R"({"certificateAuthority": "c"})"), "rehearsal.json needs the text \"apiOrigin\"");
    EXPECT_EQ(failureOf(R"({"apiOrigin": "https://h.invalid"})"),
              "rehearsal.json needs the text \"certificateAuthority\"");
    EXPECT_EQ(failureOf(R"({"apiOrigin": "http://h.invalid", "certificateAuthority": "c"})"),
              "\"apiOrigin\" must be like https://localhost:8443, not \"http://h.invalid\"");
    EXPECT_EQ(failureOf(R"({"apiOrigin": "https://h.invalid/", "certificateAuthority": "c"})"),
              "\"apiOrigin\" must be like https://localhost:8443, not \"https://h.invalid/\"");
    EXPECT_EQ(
        failureOf(
            R"({"apiOrigin": "https://h.invalid", "certificateAuthority": "c", "downloadTimeoutSeconds": 0})"),
        "\"downloadTimeoutSeconds\" in rehearsal.json must be a whole number of seconds from 1");
    EXPECT_EQ(failureOf(R"({"apiOrigin": "https://h.invalid", "certificateAuthority": "c", "speed": 1})"),
              "rehearsal.json has the unknown key \"speed\"");
}

TEST_F(RehearsalDeploymentTest, IsRefusedInAFolderThatCannotStandInAUrl) {
    EXPECT_THROW(readRehearsal("relative"), RehearsalError);
    EXPECT_THROW(readRehearsal(folder_.path() / "with blank"), RehearsalError);
}

int statusWithFolder(const std::optional<std::string>& folder) {
    const test::EnvironmentVariable variable("ORVANE_REHEARSAL", folder);
    platform::Process program;
    program.setLaunchPath(ORVANE_REHEARSAL_PROGRAM);
    program.launch();
    return program.waitUntilExit();
}

TEST_F(RehearsalDeploymentTest, IsAskedForBeforeAnythingElse) {
    EXPECT_EQ(statusWithFolder(std::nullopt), 64);
    EXPECT_EQ(statusWithFolder(""), 64);
    EXPECT_EQ(statusWithFolder(folder_.path().string()), 65);
}

} // namespace
} // namespace orvane::demo
