#include "config/Deployment.h"

#include "config/VendorValues.h"

namespace orvane {

using namespace std::chrono_literals;

const Deployment& productDeployment() {
    static const std::string api = std::string("https://") + vendor::kApiHost;
    static const Deployment deployment{
        .productWord = "varlen",
        .windowTitle = "Varlen",
        .engineRoot = "/opt",
        .logRoot = "/Library/Application Support/Kestrix",
        .fileDescriptionUrl = api + "/downloadinstaller?os=darwin&product=varlen",
        .crashReportUrl = api + "/crashreport",
        .serviceNamePrefix = "kestrix.orvane.bootstrap.",
        .fileDescriptionWait = 15s,
        .downloadTimeout = 30s,
        .crashReportWait = 15s,
        .crashReportTimeout = 60s,
        .vendorNames =
            {
                .downloadServer = vendor::kDownloadServer,
                .secondServer = vendor::kSecondServer,
                .apiServers = vendor::kApiServers,
                .webSite = vendor::kWebSite,
                .domain = vendor::kDomain,
                .productWebDomain = vendor::kProductWebDomain,
            },
    };
    return deployment;
}

} // namespace orvane
