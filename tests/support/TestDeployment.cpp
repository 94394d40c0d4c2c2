#include "tests/support/TestDeployment.h"

namespace orvane::test {

using namespace std::chrono_literals;

TestDeployment::TestDeployment(const std::string& serverRoot)
    : values{
          .productWord = "varlen",
          .windowTitle = "Varlen",
          .engineRoot = folder_.path() / "opt",
          .logRoot = folder_.path() / "logs",
          .fileDescriptionUrl = serverRoot + "/downloadinstaller?os=darwin&product=varlen",
          .crashReportUrl = serverRoot + "/crashreport",
          .serviceNamePrefix = "kestrix.orvane.test.",
          .fileDescriptionWait = 30s,
          .downloadTimeout = 30s,
          .crashReportWait = 30s,
          .crashReportTimeout = 30s,
          .vendorNames =
              {
                  .downloadServer = "downloads.vendor.example",
                  .secondServer = "www.vendor.example",
                  .apiServers = "*.vendor.example",
                  .webSite = "https://www.vendor.example",
                  .domain = "vendor.example",
                  .productWebDomain = "varlen.vendor.example",
              },
      } {}

std::filesystem::path TestDeployment::engine() const {
    return values.engineRoot / "Varlen" / "orvane" / "varlen-setup";
}

} // namespace orvane::test
