#include "demo/Scenario.h"

#include <charconv>
#include <functional>
#include <map>
#include <optional>

namespace orvane::demo {
namespace {

using Argument = std::string_view;

template <typename Number>
Number numberIn(Argument text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw ScenarioError("\"" + std::string(text) + "\" is not a number");
    }
    return number;
}

/// Takes the text before the first blank off `rest`; an empty text when nothing is left.
Argument takeWord(Argument& rest) {
    const std::size_t end = rest.find(' ');
    const Argument word = rest.substr(0, end);
    rest = end == Argument::npos ? Argument() : rest.substr(end + 1);
    return word;
}

std::chrono::milliseconds millisecondsIn(Argument text) {
    return std::chrono::milliseconds(numberIn<std::uint32_t>(text));
}

std::filesystem::path pathIn(Argument text) {
    if (text.empty()) {
        throw ScenarioError("a path is missing");
    }
    return text;
}

std::string wordingFor(Argument text, Argument locale) {
    static constexpr Argument kSeparator = " | ";
    const std::size_t separator = text.find(kSeparator);
    if (separator == Argument::npos) {
        return std::string(text);
    }
    return std::string(locale.starts_with("de") ? text.substr(separator + kSeparator.size())
                                                : text.substr(0, separator));
}

Glide glideIn(Argument rest) {
    const auto from = numberIn<std::int64_t>(takeWord(rest));
    const auto to = numberIn<std::int64_t>(takeWord(rest));
    return {from, to, millisecondsIn(rest)};
}

Flood floodIn(Argument rest) {
    const auto count = numberIn<std::int64_t>(takeWord(rest));
    return {count, std::string(rest)};
}

SendMessage rawMessageIn(Argument rest) {
    const auto type = numberIn<std::int32_t>(takeWord(rest));
    return {static_cast<EngineMessageType>(type), std::string(rest)};
}

SendMessage restartQuestionIn(Argument rest, Argument locale) {
    const Argument step = takeWord(rest);
    return {EngineMessageType::restart, std::string(step) + wordingFor(rest, locale)};
}

/// The verb of a message is its type's name, and "fatal" is an end that says what went wrong.
std::optional<EngineMessageType> messageTypeOf(Argument verb) {
    const EngineMessageKind* const kind = engineMessageKind(verb == "fatal" ? "end" : verb);
    return kind == nullptr ? std::nullopt : std::optional(kind->type);
}

ScenarioCommand commandIn(Argument line, Argument locale) {
    using Reader = std::function<ScenarioCommand(Argument)>;
    static const std::map<Argument, Reader> readers{
        {"raw", rawMessageIn},
        {"glide", glideIn},
        {"flood", floodIn},
        {"wait-ms", [](Argument rest) { return WaitDuration{millisecondsIn(rest)}; }},
        {"wait-for", [](Argument rest) { return WaitForFile{pathIn(rest)}; }},
        {"wait-interrupt", [](Argument) { return WaitForInterrupt{}; }},
        {"wait-owner-gone", [](Argument) { return WaitForOwnersEnd{}; }},
        {"mark", [](Argument rest) { return MarkFile{pathIn(rest)}; }},
        {"mark-on-interrupt", [](Argument rest) { return MarkWhenInterrupted{pathIn(rest)}; }},
        {"record", [](Argument rest) { return RecordProcess{pathIn(rest)}; }},
        {"exit", [](Argument rest) { return ExitWith{numberIn<std::uint8_t>(rest)}; }},
    };

    Argument rest = line;
    const Argument verb = takeWord(rest);
    if (verb == "restart") {
        return restartQuestionIn(rest, locale);
    }
    if (const auto type = messageTypeOf(verb)) {
        return SendMessage{*type, wordingFor(rest, locale)};
    }
    const auto reader = readers.find(verb);
    if (reader == readers.end()) {
        throw ScenarioError("unknown command \"" + std::string(verb) + "\"");
    }
    return reader->second(rest);
}

std::int64_t stepOfSection(Argument line) {
    static constexpr Argument kOpening = "[step ";
    if (!line.starts_with(kOpening) || !line.ends_with("]")) {
        throw ScenarioError("a section begins with [step N]");
    }
    line.remove_prefix(kOpening.size());
    line.remove_suffix(1);
    return numberIn<std::int64_t>(line);
}

Argument takeLine(Argument& rest) {
    const std::size_t end = rest.find('\n');
    const Argument line = rest.substr(0, end);
    rest = end == Argument::npos ? Argument() : rest.substr(end + 1);
    return line;
}

} // namespace

std::vector<ScenarioCommand> parseScenario(std::string_view text, std::int64_t step,
                                           std::string_view locale) {
    std::map<std::int64_t, std::vector<ScenarioCommand>> sections;
    std::vector<ScenarioCommand> beginning;
    std::vector<ScenarioCommand>* section = &beginning;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const Argument line = takeLine(text);
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        try {
            if (line.starts_with('[')) {
                section = &sections[stepOfSection(line)];
            } else {
                section->push_back(commandIn(line, locale));
            }
        } catch (const ScenarioError& error) {
            throw ScenarioError("line " + std::to_string(number) + ": " + error.what());
        }
    }
    const auto found = sections.find(step);
    return found == sections.end() ? beginning : found->second;
}

} // namespace orvane::demo
