#pragma once

#include "config/Deployment.h"

#include <filesystem>
#include <stdexcept>
#include <string>

namespace orvane::demo {

/// The product's deployment moved into a folder and to a vendor on this machine.
struct Rehearsal {
    Deployment deployment;
    std::string certificateAuthority; ///< PEM file that holds the vendor's authority
};

class RehearsalError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads rehearsal.json in `folder`:
///
///     {
///       "apiOrigin": "https://localhost:8443",
///       "certificateAuthority": "/tmp/vendor/ca.pem",
///       "fileDescriptionWaitSeconds": 15,
///       "downloadTimeoutSeconds": 30,
///       "crashReportWaitSeconds": 15
///     }
///
/// The three limits may be left out. Engine and logs come to lie in `folder`, whose path must be absolute and
/// parse as a URL's. Throws `RehearsalError` naming what is wrong.
Rehearsal readRehearsal(const std::filesystem::path& folder);

} // namespace orvane::demo
