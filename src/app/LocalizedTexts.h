#pragma once

#include "config/Deployment.h"

#include <cstdint>
#include <map>
#include <string>

namespace orvane {

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
