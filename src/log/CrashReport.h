#pragma once

#include <filesystem>
#include <string>

namespace orvane {

struct Deployment;

/// The JSON text of a crash report that holds the log at `logFile`, as the vendor's service reads it. Takes
/// 4/3 of the log's size in memory: the log is read chunk by chunk. Throws `platform::Error`. Any thread.
std::string crashReportPayload(const std::filesystem::path& logFile);

/// Posts a crash report to the vendor's service; any answer, an error status included, counts as delivered.
/// Returns when the request has ended, or after the deployment's `crashReportWait` without cancelling it;
/// throws `platform::Error` then, or when the request failed. Any thread but one that must not block.
void postCrashReport(std::string payload, const Deployment& deployment);

} // namespace orvane
