#include "tools/HtmlPage.h"

#include "tools/DayChart.h"
#include "tools/PrintableText.h"

#include <algorithm>

namespace orvane::tools {
namespace {

/// Browsers are told to load and run nothing, so that even a mistake in the escaping could do no harm.
constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>Crash reports</title>
<style>
:root {
  color-scheme: light dark;
  --ground: #ffffff; --raised: #f2f5f7; --text: #14222b; --quiet: #4d5d68; --line: #c9d3da; --link: #005f8a;
  --mark: #ffe9a8;
  --c0: #005f8a; --c1: #d0661b; --c2: #2c8a4b; --c3: #b0407f; --c4: #7d6bc4; --c5: #b38600; --c6: #1e9aa8;
  --c7: #7b8790;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #12181d; --raised: #1c252c; --text: #e6edf2; --quiet: #a3b3be; --line: #35434d; --link: #6cc1ea;
    --mark: #5a4a12;
    --c0: #4da9d6; --c1: #f0954f; --c2: #5fbf7c; --c3: #e083b6; --c4: #a999ea; --c5: #e0b53a; --c6: #5cc9d4;
    --c7: #8c9aa4;
  }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--ground); color: var(--text); font: 16px/1.5 system-ui, sans-serif; }
main { max-width: 64rem; margin: 0 auto; padding: 2rem 1.25rem 4rem; }
h1 { margin: 0 0 .25rem; font-size: 1.75rem; line-height: 1.2; }
h2 { margin: 2.5rem 0 .75rem; font-size: 1.25rem; }
h3 { margin: 0 0 .5rem; font-size: 1.05rem; line-height: 1.35; }
a { color: var(--link); }
p { margin: .25rem 0; }
.quiet { color: var(--quiet); }
.wide { overflow-x: auto; }
table { width: 100%; border-collapse: collapse; font-variant-numeric: tabular-nums; }
th, td { padding: .5rem .75rem .5rem 0; border-bottom: 1px solid var(--line); text-align: left; vertical-align: top; }
th { color: var(--quiet); font-size: .85rem; font-weight: 600; }
.right { text-align: right; white-space: nowrap; }
.time { white-space: nowrap; font-size: .9rem; }
.share { width: 8rem; }
.track { display: block; height: .5rem; margin-top: .5rem; border-radius: .25rem; background: var(--line); }
.bar { display: block; height: 100%; min-width: 2px; border-radius: .25rem; }
svg { display: block; width: 100%; height: auto; font: 12px system-ui, sans-serif; }
svg text { fill: var(--quiet); }
svg .number { text-anchor: end; }
svg .grid { stroke: var(--line); stroke-width: 1; }
ul.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; margin: .75rem 0 0; padding: 0; list-style: none; }
.swatch { display: inline-block; width: .75rem; height: .75rem; margin-right: .4rem; border-radius: 2px; }
section.cause { margin: 1rem 0; padding: 1rem 1.25rem; border-radius: .5rem; background: var(--raised); }
dl { display: grid; grid-template-columns: 7rem 1fr; gap: .35rem 1rem; margin: 0; }
dt { color: var(--quiet); }
dd { margin: 0; overflow-wrap: anywhere; }
code, pre { font: .875em/1.5 ui-monospace, monospace; }
summary { margin-top: .75rem; cursor: pointer; color: var(--link); }
pre { margin: .5rem 0 0; padding: .75rem; border: 1px solid var(--line); border-radius: .25rem; background: var(--ground);
      white-space: pre-wrap; overflow-wrap: anywhere; max-height: 32rem; overflow-y: auto; unicode-bidi: plaintext; }
mark { background: var(--mark); color: inherit; }
@media (max-width: 40rem) { dl { grid-template-columns: 1fr; } dd { margin-bottom: .5rem; } }
)";

std::string colourOf(std::size_t rank) {
    return std::string("c").append(std::to_string(std::min(rank, kColouredCauses)));
}

std::string colourRules() {
    std::string rules;
    for (std::size_t rank = 0; rank <= kColouredCauses; ++rank) {
        const std::string name = colourOf(rank);
        rules += "." + name + " { fill: var(--" + name + "); background: var(--" + name + "); }\n";
    }
    return rules + "</style>\n</head>\n<body>\n<main>\n";
}

/// Texts of the catalogue: what stands between backticks is code.
std::string catalogueText(std::string_view text) {
    std::string html;
    bool isCode = false;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('`', start), text.size());
        html += htmlEscaped(text.substr(start, end - start));
        if (end < text.size()) {
            html += isCode ? "</code>" : "<code>";
            isCode = !isCode;
        }
        start = end + 1;
    }
    return html;
}

std::string timeOrUnknown(const std::optional<ReceiptTime>& time) {
    return time ? timeText(*time) : "unknown";
}

std::string overview(const ReportSummary& summary) {
    std::string text = "<h1>Crash reports</h1>\n<p>" + std::to_string(summary.total()) + " logs";
    if (summary.period().first) {
        text += ", received " + timeText(*summary.period().first) + " to " +
                timeText(*summary.period().last) + " (all times are UTC)";
    }
    text += ".</p>\n";
    if (summary.skipped() > 0) {
        text += "<p class=\"quiet\">Skipped: " + std::to_string(summary.skipped(Unusable::foreign)) +
                " foreign, " + std::to_string(summary.skipped(Unusable::damaged)) + " damaged and " +
                std::to_string(summary.skipped(Unusable::unreadable)) + " unreadable files.</p>\n";
    }
    return text;
}

std::string causesTable(const ReportSummary& summary, const std::vector<CauseCount>& counts) {
    std::string text =
        "<h2>Causes</h2>\n<div class=\"wide\"><table>\n<thead><tr><th>Cause</th><th "
        "class=\"right\">Count</th>"
        "<th class=\"right\">Share</th><th class=\"share\"></th><th>First</th><th>Last</th></tr></thead>\n"
        "<tbody>\n";
    for (std::size_t rank = 0; rank < counts.size(); ++rank) {
        const CauseCount& count = counts[rank];
        const std::string share = shareText(count.count, summary.total());
        std::string width = share.substr(0, share.find(' ')) + "%";
        text += "<tr><td><a href=\"#" + std::string(count.cause->id) + "\">" +
                catalogueText(count.cause->title) + "</a><br><code class=\"quiet\">" +
                std::string(count.cause->id) + "</code></td><td class=\"right\">" +
                std::to_string(count.count) + "</td><td class=\"right\">" + share +
                "</td><td class=\"share\"><span class=\"track\"><span class=\"bar " + colourOf(rank) +
                "\" style=\"width:" + width + "\"></span></span></td><td class=\"time\">" +
                timeOrUnknown(count.period.first) + "</td><td class=\"time\">" +
                timeOrUnknown(count.period.last) + "</td></tr>\n";
    }
    return text + "</tbody>\n</table></div>\n";
}

std::string legend(const std::vector<CauseCount>& counts) {
    std::string text = "<ul class=\"legend\">\n";
    for (std::size_t rank = 0; rank < std::min(counts.size(), kColouredCauses + 1); ++rank) {
        const bool isRest = rank == kColouredCauses;
        text += "<li><span class=\"swatch " + colourOf(rank) + "\"></span>" +
                (isRest ? "other causes" : std::string(counts[rank].cause->id)) + "</li>\n";
    }
    return text + "</ul>\n";
}

std::string days(const ReportSummary& summary, const std::vector<CauseCount>& counts) {
    const std::string chart = dayChart(summary);
    return chart.empty() ? "" : "<h2>By day</h2>\n" + chart + legend(counts);
}

/// The log with the line that shows the cause marked.
std::string exampleLog(const CauseCount& count) {
    const std::string& log = count.exampleText;
    const std::size_t start = count.exampleLine.empty() ? std::string::npos : log.rfind(count.exampleLine);
    if (start == std::string::npos) {
        return htmlEscaped(printable(log));
    }
    const std::size_t end = start + count.exampleLine.size();
    return htmlEscaped(printable(log.substr(0, start))) + "<mark>" +
           htmlEscaped(printable(count.exampleLine)) + "</mark>" + htmlEscaped(printable(log.substr(end)));
}

std::string sightText(const SightTexts& texts) {
    if (texts.french.empty()) {
        return htmlEscaped(texts.heading);
    }
    return "<span lang=\"fr\">« " + htmlEscaped(texts.french) + " »</span><br><span lang=\"de\">„" +
           htmlEscaped(texts.german) + "“</span>";
}

std::string causeSection(const CauseCount& count) {
    const Cause& cause = *count.cause;
    return "<section class=\"cause\" id=\"" + std::string(cause.id) + "\">\n<h3>" +
           catalogueText(cause.title) + "</h3>\n<dl><dt>User saw</dt><dd>" + sightText(textsOf(cause.sight)) +
           "</dd>\n<dt>In the log</dt><dd>" + catalogueText(cause.sign) + "</dd>\n<dt>Remedy</dt><dd>" +
           catalogueText(cause.remedy) + "</dd>\n<dt>Example</dt><dd>" +
           htmlEscaped(printableLine(count.exampleName)) + ", received " + timeOrUnknown(count.exampleTime) +
           "</dd></dl>\n<details><summary>Log of the example</summary><pre>" + exampleLog(count) +
           "</pre></details>\n</section>\n";
}

} // namespace

std::string htmlPage(const ReportSummary& summary) {
    const std::vector<CauseCount> counts = summary.byFrequency();
    std::string page = std::string(kHead) + colourRules() + overview(summary);
    if (!counts.empty()) {
        page += causesTable(summary, counts) + days(summary, counts) + "<h2>Remedies</h2>\n";
    }
    for (const CauseCount& count : counts) {
        page += causeSection(count);
    }
    return page + "</main>\n</body>\n</html>\n";
}

} // namespace orvane::tools
