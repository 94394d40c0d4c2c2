#include "config/Deployment.h"

#include "config/VendorValues.h"

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
    const std::string host = vendor::kApiHost;
    EXPECT_EQ(productDeployment().fileDescriptionUrl,
              "https://" + host + "/downloadinstaller?os=darwin&product=varlen");
    EXPECT_EQ(productDeployment().crashReportUrl, "https://" + host + "/crashreport");
}

TEST(ProductDeploymentTest, TextsNameTheVendorAsTheBuildDoes) {
    const VendorNames& names = productDeployment().vendorNames;
    EXPECT_EQ(names.downloadServer, vendor::kDownloadServer);
    EXPECT_EQ(names.secondServer, vendor::kSecondServer);
    EXPECT_EQ(names.apiServers, vendor::kApiServers);
    EXPECT_EQ(names.webSite, vendor::kWebSite);
    EXPECT_EQ(names.domain, vendor::kDomain);
    EXPECT_EQ(names.productWebDomain, vendor::kProductWebDomain);
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
