#include "app/ViewController.h"

#include "log/Logger.h"
#include "platform/Locale.h"
#include "platform/ProgrammingError.h"

#include <algorithm>
#include <limits>

namespace orvane {

namespace {

/// The language of a tag such as "de-CH", in lower case: its first part that is not empty.
std::string primaryLanguage(std::string tag) {
    if (tag.find('-') != std::string::npos) {
        const std::size_t start = tag.find_first_not_of('-');
        if (start == std::string::npos) {
            invalidInput("a language tag consists of hyphens only");
        }
        tag = tag.substr(start, tag.find('-', start) - start);
    }
    std::transform(tag.begin(), tag.end(), tag.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return tag;
}

} // namespace

/// Nothing chooses the English texts: a user of any third language reads French ones.
void ViewController::initializeLocale() {
    localizedTexts.store(std::make_shared<const LocalizedTexts>(loadLocalizedTexts(deployment_.vendorNames)));
    writeProgramLog("Checking preferred languages");
    for (const std::string& tag : platform::preferredLanguages()) {
        writeProgramLog("Found " + tag);
        const std::string primary = primaryLanguage(tag);
        if (primary == "fr" || primary == "fre") {
            localeName.store("fr-ch");
            languageOffset = language::kFrench;
            return;
        }
        if (primary == "de" || primary == "ger") {
            localeName.store("de-ch");
            languageOffset = language::kGerman;
            return;
        }
    }
}

std::string ViewController::loadTranslatedString(std::int64_t stringID) const {
    const std::int64_t offset = languageOffset;
    if (stringID > std::numeric_limits<std::int64_t>::max() - offset) {
        programmingError("a text identifier is out of range");
    }
    if (const auto texts = localizedTexts.load()) {
        if (const auto found = texts->find(offset + stringID); found != texts->end()) {
            return found->second;
        }
    }
    return "undefined text: " + std::to_string(stringID);
}

} // namespace orvane
