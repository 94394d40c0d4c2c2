#include "tools/CommandLine.h"
#include "tools/HtmlPage.h"
#include "tools/PrintableText.h"
#include "tools/ReportText.h"
#include "tools/ToolError.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

using namespace orvane::tools;

constexpr std::string_view kStandardInput = "-";

void readPath(ReportReader& reader, const std::string& path) {
    if (path == kStandardInput) {
        reader.readStream(std::cin, "standard input");
    } else {
        reader.read(path);
    }
}

void warnOf(const SkippedFile& file) {
    std::cerr << "orvane-reports: skipped (" << nameOf(file.kind) << "): " << printableLine(file.name) << ": "
              << file.reason << "\n";
}

/// Replaces the page as a whole, so that a reader never gets half of it.
void writePage(const std::string& file, const ReportSummary& summary) {
    const std::string partial = file + ".partial";
    std::ofstream stream(partial, std::ios::binary);
    stream << htmlPage(summary);
    stream.close();
    std::error_code failure;
    if (stream) {
        std::filesystem::rename(partial, file, failure);
    }
    if (!stream || failure) {
        std::error_code ignored;
        std::filesystem::remove(partial, ignored);
        throw ToolError(ExitStatus::cannotCreate, file + " cannot be written");
    }
}

/// Whether everything that the command line names exists.
bool allExist(const Arguments& paths) {
    return std::ranges::all_of(paths, [](const std::string& path) {
        std::error_code failure;
        return path == kStandardInput || std::filesystem::exists(path, failure);
    });
}

int runSummary(const Arguments& arguments) {
    Arguments paths;
    std::string page;
    bool json = false;
    CommandLine line("orvane-reports", "Sorts crash reports by cause.\nCommands: show, causes.",
                     "0 done, 64 wrong usage, 66 a named file is missing, 73 cannot write");
    line.add_option("PATH", paths, "reports, logs, folders; - for standard input")->required();
    line.option("--html", page, "FILE", "write a page with causes, chart and example logs to FILE");
    line.add_flag("--json", json, "print one JSON object for each report, instead of the summary");
    line.read(arguments);

    ReportSummary summary;
    ReportReader reader(
        [&](FoundLog found) {
            const RunLog log(std::move(found.text));
            const Diagnosis diagnosis = diagnose(log, found.source);
            summary.add(found, log, diagnosis);
            if (json) {
                std::cout << logJson(found, log, diagnosis);
            }
        },
        [&](const SkippedFile& file) {
            summary.addSkipped(file);
            warnOf(file);
        });
    for (const std::string& path : paths) {
        readPath(reader, path);
    }
    if (!json) {
        std::cout << summaryText(summary);
    }
    if (!page.empty()) {
        writePage(page, summary);
    }
    return allExist(paths) ? 0 : static_cast<int>(ExitStatus::noInput);
}

int runShow(const Arguments& arguments) {
    std::string path;
    CommandLine line("orvane-reports show", "Prints one log with its cause.",
                     "0 done, 64 wrong usage, 65 not a report or log, 66 cannot be read");
    line.add_option("FILE", path, "a crash report or a log; - for standard input")->required();
    line.read(arguments);
    if (std::filesystem::is_directory(path)) {
        refuseUsage(path + " is a folder; name one file in it");
    }
    ReportReader reader(
        [](FoundLog found) {
            const RunLog log(std::move(found.text));
            std::cout << logText(found, log, diagnose(log, found.source));
        },
        [](const SkippedFile& file) {
            throw ToolError(file.kind == Unusable::unreadable ? ExitStatus::noInput : ExitStatus::badData,
                            printableLine(file.name) + ": " + file.reason);
        });
    readPath(reader, path);
    return 0;
}

int runCauses(const Arguments& arguments) {
    bool markdown = false;
    CommandLine line("orvane-reports causes", "Prints all causes with their remedies.",
                     "0 done, 64 wrong usage");
    line.add_flag("--markdown", markdown, "as the tables of docs/support.md");
    line.read(arguments);
    std::cout << (markdown ? causesMarkdown() : causesText());
    return 0;
}

int run(const Arguments& all) {
    const std::string command = all.empty() ? "" : all.front();
    if (command == "show" || command == "causes") {
        const Arguments rest(all.begin() + 1, all.end());
        return command == "show" ? runShow(rest) : runCauses(rest);
    }
    return runSummary(all);
}

} // namespace

int main(int argumentCount, char** arguments) {
    std::ios::sync_with_stdio(false);
    return runTool("orvane-reports", argumentCount, arguments, run);
}
