#pragma once

#include <cstdint>

/// Identifiers of the texts that some code looks up in the language of the run. Where a text has one form for
/// each mode, the uninstallation's follows the installation's.
namespace orvane::text {

inline constexpr std::int64_t kCancel = 0;
inline constexpr std::int64_t kAbortInstallationQuestion = 1;
inline constexpr std::int64_t kQuit = 2;
inline constexpr std::int64_t kNetworkUnavailable = 3;
inline constexpr std::int64_t kNoConnection = 4;
inline constexpr std::int64_t kDownloadIncorrect = 5;
inline constexpr std::int64_t kUninstallationConsent = 7;
inline constexpr std::int64_t kAbortUninstallationQuestion = 8;
inline constexpr std::int64_t kInstallerTooOld = 9;
inline constexpr std::int64_t kEndedWell = 10;
inline constexpr std::int64_t kMeteredNetwork = 12;
inline constexpr std::int64_t kYes = 13;
inline constexpr std::int64_t kNo = 14;
inline constexpr std::int64_t kFailed = 15;
inline constexpr std::int64_t kPreparing = 17;

/// Every identifier from 0 up to here has its texts; this one has none yet.
inline constexpr std::int64_t kFirstUnassigned = 20;

} // namespace orvane::text
