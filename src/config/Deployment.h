#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace orvane {

/// Names of the vendor's servers and web addresses as texts shown to the user mention them.
struct VendorNames {
    std::string downloadServer;
    std::string secondServer;
    std::string apiServers; ///< a wildcard that covers the API hosts
    std::string webSite;    ///< with its scheme
    std::string domain;
    std::string productWebDomain;
};

/// Everything a run takes as fixed: where things lie, whom it talks to and how long it waits.
///
/// The product runs with `productDeployment()`; a rehearsal or a test passes one of its own. Made once
/// before the application starts and only read afterwards, from any thread.
struct Deployment {
    std::string productWord; ///< lower case; its capitalised form names folders
    std::string windowTitle;

    std::filesystem::path engineRoot; ///< holds the folder named after the product
    std::filesystem::path logRoot;    ///< holds "Installations" and "Uninstallations"

    std::string fileDescriptionUrl;
    std::string crashReportUrl;
    std::string serviceNamePrefix; ///< of the endpoint on which the engine reports

    std::chrono::seconds fileDescriptionWait; ///< the decision goes on without an answer after this
    std::chrono::seconds downloadTimeout;     ///< longest wait for further data of the engine
    std::chrono::seconds crashReportWait;     ///< the fatal alert is held up no longer than this
    std::chrono::seconds crashReportTimeout;  ///< longest wait for further data of the report's request

    VendorNames vendorNames;
};

/// The deployment of the program people run. Reads no environment variable and no file.
const Deployment& productDeployment();

} // namespace orvane
