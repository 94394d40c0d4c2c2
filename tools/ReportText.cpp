#include "tools/ReportText.h"

#include "tools/PrintableText.h"

#include <nlohmann/json.hpp>
#include <sstream>

namespace orvane::tools {
namespace {

using Json = nlohmann::ordered_json;

template <class Value>
Json jsonOf(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

std::string field(std::string_view name, std::string_view text) {
    static constexpr std::size_t kWidth = 14;
    std::string line = "    " + std::string(name);
    line.append(line.size() < kWidth + 4 ? kWidth + 4 - line.size() : 1, ' ');
    return line + std::string(text) + "\n";
}

std::string periodText(const Period& period) {
    if (!period.first) {
        return "unknown";
    }
    return timeText(*period.first) + " to " + timeText(*period.last) + " UTC";
}

/// What the user saw, in the user's words where they are fixed.
std::string sightText(const SightTexts& texts) {
    return texts.french.empty()
               ? std::string(texts.heading)
               : "« " + std::string(texts.french) + " », „" + std::string(texts.german) + "“";
}

std::string causeFields(const Cause& cause) {
    return field("user saw", sightText(textsOf(cause.sight))) + field("cause", cause.title) +
           field("remedy", cause.remedy);
}

std::string numberOf(std::uint64_t count, const std::string& one, const std::string& several) {
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string skippedText(const ReportSummary& summary) {
    if (summary.skipped() == 0) {
        return "";
    }
    std::ostringstream text;
    text << numberOf(summary.skipped(), "file was skipped: ", "files were skipped: ")
         << summary.skipped(Unusable::foreign) << " foreign, " << summary.skipped(Unusable::damaged)
         << " damaged, " << summary.skipped(Unusable::unreadable) << " unreadable\n";
    return text.str();
}

std::string isoText(ReceiptTime time) {
    std::string text = timeText(time);
    text[text.find(' ')] = 'T';
    return text + "Z";
}

std::string receivedText(const FoundLog& found) {
    return found.received ? timeText(*found.received) + " UTC" : "unknown";
}

} // namespace

std::string_view nameOf(Unusable kind) {
    switch (kind) {
    case Unusable::foreign:
        return "foreign";
    case Unusable::damaged:
        return "damaged";
    default:
        return "unreadable";
    }
}

std::string summaryText(const ReportSummary& summary) {
    std::ostringstream text;
    text << numberOf(summary.total() - summary.logFiles(), "crash report", "crash reports");
    if (summary.logFiles() > 0) {
        text << " and " << numberOf(summary.logFiles(), "log", "logs");
    }
    text << ", received " << periodText(summary.period()) << "\n" << skippedText(summary);
    for (const CauseCount& count : summary.byFrequency()) {
        text << "\n"
             << count.count << "  " << shareText(count.count, summary.total()) << "  " << count.cause->id
             << "\n"
             << field("received", periodText(count.period)) << causeFields(*count.cause)
             << field("example", printableLine(count.exampleName));
    }
    return text.str();
}

std::string logText(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis) {
    const RunFacts facts = factsOf(log);
    const auto known = [](const std::optional<std::string>& value) {
        return printableLine(value.value_or("–"));
    };
    std::string text = printableLine(found.name) + ": " + std::string(diagnosis.cause->id) + "\n";
    text += causeFields(*diagnosis.cause) + field("received", receivedText(found)) +
            field("mode", known(facts.mode)) + field("language", known(facts.language)) +
            field("step", facts.restartStep ? std::to_string(*facts.restartStep) : "–") +
            field("engine", known(facts.engineVersion)) +
            field("bootstrapper", known(facts.bootstrapperMajorVersion)) + "\n";
    for (const LogLine line : log.lines()) {
        text += (line.data() == diagnosis.line.data() ? "> " : "  ") + printable(log.withTime(line)) + "\n";
    }
    return text;
}

std::string logJson(const FoundLog& found, const RunLog& log, const Diagnosis& diagnosis) {
    const RunFacts facts = factsOf(log);
    const Json object{
        {"file", found.name},
        {"received", found.received ? Json(isoText(*found.received)) : Json()},
        {"source", found.source == LogSource::crashReport ? "report" : "log"},
        {"mode", jsonOf(facts.mode)},
        {"language", jsonOf(facts.language)},
        {"restartStep", jsonOf(facts.restartStep)},
        {"engineVersion", jsonOf(facts.engineVersion)},
        {"bootstrapperMajorVersion", jsonOf(facts.bootstrapperMajorVersion)},
        {"cause", std::string(diagnosis.cause->id)},
        {"line", diagnosis.line.empty() ? Json() : Json(std::string(diagnosis.line))},
        {"remedy", std::string(diagnosis.cause->remedy)},
    };
    // A log may hold anything: what is not UTF-8 is replaced.
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string causesText() {
    std::string text;
    for (const Cause& cause : causes()) {
        text += std::string(cause.id) + "\n" + causeFields(cause) + field("in the log", cause.sign) + "\n";
    }
    return text;
}

std::string causesMarkdown() {
    std::string text;
    for (const SightTexts& texts : sights()) {
        text += "### " + std::string(texts.heading) + "\n\n";
        if (!texts.french.empty()) {
            text += sightText(texts) + "\n\n";
        }
        text += "| in the log | cause | remedy | name |\n|---|---|---|---|\n";
        for (const Cause& cause : causes()) {
            if (cause.sight == texts.sight) {
                text += "| " + std::string(cause.sign) + " | " + std::string(cause.title) + " | " +
                        std::string(cause.remedy) + " | `" + std::string(cause.id) + "` |\n";
            }
        }
        text += "\n";
    }
    return text;
}

} // namespace orvane::tools
