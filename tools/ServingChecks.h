#pragma once

#include "tools/Finding.h"
#include "tools/HttpProbe.h"

#include <chrono>
#include <string>

namespace orvane::tools {

// What an answer's status, headers and certificate mean for clients and for a delivery network.

/// Status, validity of the certificate, and what a delivery network would cache of the description.
Findings checkDescriptionServing(const HttpAnswer& answer, std::chrono::system_clock::time_point now);

/// The same for the engine's file, and whether its length is known for the progress bar. `version` is the
/// described one.
Findings checkEngineServing(const HttpAnswer& answer, const std::string& version,
                            std::chrono::system_clock::time_point now);

/// What arrived in the place of JSON: the status and the first line of the body.
std::string describeUnexpected(const HttpAnswer& answer);

} // namespace orvane::tools
