#pragma once

#include "config/Deployment.h"

#include <cstdint>
#include <map>
#include <string>

namespace orvane {

/// Identifiers of the texts that some code looks up. Where a text has one form for each mode, the
/// uninstallation's follows the installation's.
namespace text {
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
} // namespace text

/// The bases of the three language blocks: a text's key is base plus identifier.
namespace language {
inline constexpr std::int64_t kFrench = 1000;
inline constexpr std::int64_t kGerman = 2000;
inline constexpr std::int64_t kEnglish = 3000;
} // namespace language

using LocalizedTexts = std::map<std::int64_t, std::string>;

/// All texts in all languages, by key. Texts that name the vendor's servers or sites take them from
/// `vendorNames`.
LocalizedTexts loadLocalizedTexts(const VendorNames& vendorNames);

} // namespace orvane
