#include "tools/CauseCatalogue.h"

#include "app/LocalizedTexts.h"
#include "model/TextIdentifiers.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace orvane::tools {
namespace {

TEST(CauseCatalogueTest, EveryCauseHasANameOfItsOwnAndAllThatSupportNeeds) {
    std::set<std::string_view> names;
    for (const Cause& cause : causes()) {
        EXPECT_TRUE(names.insert(cause.id).second) << cause.id;
        EXPECT_FALSE(cause.sign.empty() || cause.title.empty() || cause.remedy.empty()) << cause.id;
        EXPECT_EQ(&causeNamed(cause.id), &cause);
    }
    EXPECT_THROW(causeNamed("none"), std::logic_error);
}

TEST(CauseCatalogueTest, NoTextWouldBreakATableOfADocument) {
    for (const Cause& cause : causes()) {
        for (const std::string_view text : {cause.sign, cause.title, cause.remedy}) {
            EXPECT_EQ(text.find_first_of("|\n*[]"), std::string_view::npos) << cause.id;
            EXPECT_EQ(std::ranges::count(text, '`') % 2, 0) << cause.id;
        }
    }
}

TEST(CauseCatalogueTest, QuotesAlertsAsUsersReadThem) {
    const LocalizedTexts texts = loadLocalizedTexts({});
    const auto expectWords = [&texts](Sight sight, std::int64_t text, const std::string& between) {
        const SightTexts& words = textsOf(sight);
        const auto quoted = [&](std::int64_t block) {
            return between.empty() ? texts.at(block + text).substr(0, 500)
                                   : texts.at(block + text) + between + texts.at(block + text + 1);
        };
        EXPECT_TRUE(quoted(language::kFrench).starts_with(words.french)) << words.french;
        EXPECT_TRUE(quoted(language::kGerman).starts_with(words.german)) << words.german;
        EXPECT_FALSE(words.french.empty() || words.german.empty());
    };
    expectWords(Sight::noConnection, text::kNoConnection, "");
    expectWords(Sight::firewall, text::kDownloadIncorrect, "");
    expectWords(Sight::installerTooOld, text::kInstallerTooOld, "");
    expectWords(Sight::failed, text::kFailed, " / ");
}

} // namespace
} // namespace orvane::tools
