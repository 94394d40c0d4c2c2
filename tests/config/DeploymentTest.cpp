#include "config/Deployment.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using namespace std::chrono_literals;

TEST(ProductDeploymentTest, TheEngineAndTheLogsLieWhereTheVendorPutsThem) {
    EXPECT_EQ(productDeployment().productWord, "varlen");
    EXPECT_EQ(productDeployment().engineRoot, "/opt");
    EXPECT_EQ(productDeployment().logRoot, "/Library/Application Support/Kestrix");
}

TEST(ProductDeploymentTest, TheVendorIsAskedByHttpsOnItsOneHost) {
    EXPECT_EQ(productDeployment().fileDescriptionUrl,
              "https://api.kestrix.invalid/downloadinstaller?os=darwin&product=varlen");
    EXPECT_EQ(productDeployment().crashReportUrl, "https://api.kestrix.invalid/crashreport");
}

TEST(ProductDeploymentTest, WithTenCharactersMoreAServiceNameHas35) {
    EXPECT_EQ(productDeployment().serviceNamePrefix, "kestrix.orvane.bootstrap.");
    EXPECT_EQ(productDeployment().serviceNamePrefix.size() + 10, 35U);
}

TEST(ProductDeploymentTest, TheWaitsAreThoseThatWereAgreedUpon) {
    EXPECT_EQ(productDeployment().fileDescriptionWait, 15s);
    EXPECT_EQ(productDeployment().downloadTimeout, 30s);
    EXPECT_EQ(productDeployment().crashReportWait, 15s);
    EXPECT_EQ(productDeployment().crashReportTimeout, 60s);
}

TEST(ProductDeploymentTest, ThereIsOneForTheProcess) {
    EXPECT_EQ(&productDeployment(), &productDeployment());
}

} // namespace
} // namespace orvane
