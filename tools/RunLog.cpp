#include "tools/RunLog.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

constexpr std::size_t kTimeLength = 10; // "HH:mm:ss: "
constexpr std::size_t kMostLines = 20'000;
constexpr std::size_t kLargestDescription = std::size_t{1} << 20U;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool beginsWithTime(std::string_view line) {
    static constexpr std::string_view kForm = "00:00:00: ";
    return line.size() >= kTimeLength &&
           std::ranges::equal(line.substr(0, kTimeLength), kForm, [](char character, char form) {
               return form == '0' ? isDigit(character) : character == form;
           });
}

std::string_view withoutCarriageReturn(std::string_view text) {
    return text.ends_with('\r') ? text.substr(0, text.size() - 1) : text;
}

/// The first word after `option` and a blank.
std::optional<std::string_view> wordAfter(std::string_view arguments, std::string_view option) {
    const std::size_t found = arguments.find(option);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view rest = arguments.substr(found + option.size());
    return rest.substr(0, rest.find(' '));
}

/// Whether the options that were passed on to the engine hold "--uninstall"; they follow date and time.
bool engineWasToUninstall(std::string_view arguments) {
    static constexpr std::string_view kDateTime = " --datetime ";
    static constexpr std::size_t kDateTimeLength = 19; // "yyyy-MM-dd HH-mm-ss"
    const std::size_t found = arguments.find(kDateTime);
    if (found == std::string_view::npos) {
        return false;
    }
    const std::size_t start = std::min(found + kDateTime.size() + kDateTimeLength, arguments.size());
    return (std::string(arguments.substr(start)) + " ").find(" --uninstall ") != std::string::npos;
}

std::optional<std::string> modeOf(const RunLog& log) {
    if (const auto arguments = log.lastAfter("Spawning orvane with args --pid ")) {
        return engineWasToUninstall(*arguments) ? "uninstall" : "install";
    }
    if (log.lastAfter("process is uninstallation") || log.lastAfter("User didn't want to start")) {
        return "uninstall";
    }
    // An uninstallation would have looked for an engine on the machine, and logged the answer.
    const auto versions = majorVersionsIn(log);
    const bool gaveUp =
        log.lastAfter("Encryption algorithm ") || (versions && versions->bootstrapper != versions->engine);
    return gaveUp ? std::optional<std::string>("install") : std::nullopt;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return lower;
}

/// The rule by which the bootstrapper chooses its language: the first tag that is French or German.
std::optional<std::string> languageOf(const RunLog& log) {
    static constexpr std::string_view kFound = "Found ";
    bool hasChosen = false;
    for (const LogLine line : log.lines()) {
        if (line.starts_with(kFound)) {
            const std::string tag = lowerCase(line.substr(kFound.size()));
            const std::string language = tag.substr(0, tag.find('-'));
            if (language == "fr" || language == "fre") {
                return "fr";
            }
            if (language == "de" || language == "ger") {
                return "de";
            }
        }
        hasChosen = hasChosen || line == "Initializing orvane download";
    }
    return hasChosen ? std::optional<std::string>("fr") : std::nullopt;
}

std::optional<std::int64_t> restartStepOf(const RunLog& log) {
    const auto arguments = log.lastAfter("Spawning orvane with args --pid ");
    const auto word = arguments ? wordAfter(*arguments, " --step ") : std::nullopt;
    std::int64_t step = 0;
    if (!word) {
        return std::nullopt;
    }
    const auto [end, failure] = std::from_chars(word->data(), word->data() + word->size(), step);
    return failure == std::errc() && end == word->data() + word->size() ? std::optional(step) : std::nullopt;
}

/// The engine on the machine where it was used for its version; else the described one.
std::optional<std::string> engineVersionOf(const RunLog& log) {
    const auto description = descriptionIn(log);
    if (!description || description->version.empty()) {
        return std::nullopt;
    }
    const auto versions = log.lastAfter("remote version is ");
    static constexpr std::string_view kLocal = " and local is ";
    const std::size_t local = versions ? versions->rfind(kLocal) : std::string_view::npos;
    if (local != std::string_view::npos && log.lastAfter("Using existing orvane")) {
        return std::string(versions->substr(local + kLocal.size()));
    }
    return description->version;
}

std::string textOfKey(const nlohmann::json& document, const char* key) {
    const auto found = document.find(key);
    return found != document.end() && found->is_string() ? found->get<std::string>() : "";
}

} // namespace

RunLog::RunLog(std::string text) : text_(std::move(text)) {
    const std::string_view all = text_;
    std::size_t start = 0;
    std::size_t lineEnd = 0;
    while ((lineEnd = all.find('\n', lineEnd)) != std::string_view::npos) {
        ++lineEnd;
        // Without a time it belongs to the text before: an answer of several lines, for example.
        if (lineEnd == all.size() || beginsWithTime(all.substr(lineEnd))) {
            addLine(withoutCarriageReturn(all.substr(start, lineEnd - start - 1)));
            start = lineEnd;
        }
    }
    if (start < all.size()) {
        addLine(all.substr(start));
    }
}

void RunLog::addLine(std::string_view line) {
    if (lines_.size() == kMostLines) {
        lines_.erase(lines_.begin() + kMostLines / 2, lines_.begin() + kMostLines * 3 / 4);
    }
    lines_.push_back(beginsWithTime(line) ? line.substr(kTimeLength) : line);
}

std::string_view RunLog::withTime(LogLine line) const {
    const auto offset = static_cast<std::size_t>(line.data() - text_.data());
    if (offset < kTimeLength || !beginsWithTime(std::string_view(text_).substr(offset - kTimeLength))) {
        return line;
    }
    return {line.data() - kTimeLength, line.size() + kTimeLength};
}

std::optional<std::string_view> RunLog::lastAfter(std::string_view prefix) const {
    const auto found = std::find_if(lines_.rbegin(), lines_.rend(),
                                    [prefix](LogLine line) { return line.starts_with(prefix); });
    return found == lines_.rend() ? std::nullopt : std::optional(found->substr(prefix.size()));
}

bool looksLikeLog(std::string_view text) { return beginsWithTime(text); }

std::optional<LoggedDescription> descriptionIn(const RunLog& log) {
    const auto body = log.lastAfter("Orvane download info is ");
    if (!body || body->size() > kLargestDescription) {
        return std::nullopt;
    }
    const auto document = nlohmann::json::parse(*body, nullptr, false);
    if (!document.is_object()) {
        return std::nullopt;
    }
    return LoggedDescription{.version = textOfKey(document, "Version"),
                             .checksum = textOfKey(document, "Checksum"),
                             .checksumAlgorithm = textOfKey(document, "ChecksumAlgorithm"),
                             .encryptionAlgorithm = textOfKey(document, "EncryptionAlgorithm")};
}

std::optional<MajorVersions> majorVersionsIn(const RunLog& log) {
    static constexpr std::string_view kBetween = " and orvane major version is ";
    const auto text = log.lastAfter("bootstrapper major version is ");
    const std::size_t middle = text ? text->find(kBetween) : std::string_view::npos;
    if (middle == std::string_view::npos) {
        return std::nullopt;
    }
    return MajorVersions{.bootstrapper = text->substr(0, middle),
                         .engine = text->substr(middle + kBetween.size())};
}

RunFacts factsOf(const RunLog& log) {
    RunFacts facts{.mode = modeOf(log),
                   .language = languageOf(log),
                   .restartStep = restartStepOf(log),
                   .engineVersion = engineVersionOf(log),
                   .bootstrapperMajorVersion = std::nullopt};
    if (const auto versions = majorVersionsIn(log)) {
        facts.bootstrapperMajorVersion = std::string(versions->bootstrapper);
    }
    return facts;
}

} // namespace orvane::tools
