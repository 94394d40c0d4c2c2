/// Any text as the user's list of languages: the choice is the one that a plain reading of the rule makes.

#include "app/ViewController.h"
#include "model/TextIdentifiers.h"
#include "tests/fuzz/Finding.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

namespace orvane::fuzz {
namespace {

struct Choice {
    std::string localeName = "fr-CH";
    std::int64_t languageOffset = 1000;
    std::string yes = "Oui";

    bool operator==(const Choice&) const = default;
};

/// What the environment's list calls a locale, in lower case, without codeset and modifier.
std::string nameOf(std::string_view locale) {
    std::string name(locale.substr(0, std::min(locale.find('.'), locale.find('@'))));
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return name;
}

bool isOfPrograms(std::string_view locale) {
    const std::string_view name = locale.substr(0, std::min(locale.find('.'), locale.find('@')));
    return name.empty() || name == "C" || name == "POSIX";
}

/// None where the rule meets a tag of hyphens only, which is a programming error.
std::optional<Choice> reference(std::string_view list) {
    while (!list.empty()) {
        const std::string_view locale = takeUpTo(':', list);
        if (isOfPrograms(locale)) {
            continue;
        }
        const std::string name = nameOf(locale);
        std::string_view rest = name;
        std::string_view language;
        while (language.empty() && !rest.empty()) {
            language = takeUpTo('-', rest);
        }
        if (language.empty()) {
            return std::nullopt;
        }
        if (language == "fr" || language == "fre") {
            return Choice{.localeName = "fr-ch"};
        }
        if (language == "de" || language == "ger") {
            return Choice{.localeName = "de-ch", .languageOffset = 2000, .yes = "Ja"};
        }
    }
    return Choice{};
}

/// Lays the list into the environment without a copy, of which the C library would keep every one.
void prefer(const std::string& list) {
    static std::string variable;
    variable = "LANGUAGE=" + list;
    expect(putenv(variable.data()) == 0, "the environment can be changed");
}

void check(std::string_view input) {
    const std::string list(input.substr(0, input.find('\0')));
    const std::optional<Choice> expected = reference(list);
    if (!expected) {
        return;
    }
    prefer(list);
    const auto controller = std::make_shared<ViewController>(productDeployment());
    controller->initializeLocale();
    const Choice chosen{.localeName = controller->localeName.load(),
                        .languageOffset = controller->languageOffset,
                        .yes = controller->loadTranslatedString(text::kYes)};
    expect(chosen == *expected, "the first language that has texts is chosen");
}

} // namespace
} // namespace orvane::fuzz

/// An empty list leaves the question to the variables after it.
extern "C" int LLVMFuzzerInitialize(int* /*argumentCount*/, char*** /*arguments*/) {
    return setenv("LC_ALL", "C", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
