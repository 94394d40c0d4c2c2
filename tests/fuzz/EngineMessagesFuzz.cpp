/// A conversation, one message a line, of a digit for the type and a text: the window shows what the messages
/// say, in their order, and the run ends only where one of them ends it.

#include "app/ViewController.h"
#include "sender/EngineMessageTypes.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/RecordingControls.h"
#include "tests/support/TestDesktop.h"

#include <cstdlib>
#include <string>

namespace orvane::fuzz {
namespace {

using Lines = std::vector<std::string>;

/// A run in French, with a window of recording controls.
struct Run {
    test::TestDesktop desktop;
    platform::MainWindowControls controls = test::makeRecordingControls(desktop.journal());
    std::shared_ptr<ViewController> controller = std::make_shared<ViewController>(productDeployment());

    Run() {
        expect(setenv("LANGUAGE", "fr", 1) == 0, "the environment can be changed");
        controller->connectOutlets(controls);
        controller->initializeLocale();
    }
};

std::string errorLine(const std::string& text) { return "textError text \"" + text + '"'; }

/// What a message changes in the window.
Lines expectedLines(const Run& run, std::int32_t type, const std::string& text) {
    const auto number = messageNumber(text);
    const auto translated = [&run](std::int64_t stringID) {
        return errorLine(run.controller->loadTranslatedString(stringID));
    };
    if (type == 1) {
        return {"textStep text \"" + text + '"'};
    }
    if (type == 4) {
        return {errorLine(text)};
    }
    if (!number) {
        return {};
    }
    if (type == 0) {
        return {"progressBar value " + test::numberText(static_cast<double>(*number))};
    }
    if (type == 2 && *number >= 0 && *number <= 2) {
        return {*number == 0 ? errorLine("") : translated(*number == 1 ? 3 : 12)};
    }
    if (type == 3 && *number == 1) {
        return {translated(10)};
    }
    if (type == 6 && (*number == 0 || *number == 1)) {
        return {*number == 1 ? "cancelButton enabled" : "cancelButton disabled"};
    }
    return {};
}

bool isBeyondTheModel(std::int32_t type) { return type > 6 && engineMessageKind(type) != nullptr; }

std::optional<int> expectedEnd(std::int32_t type, const std::string& text) {
    const auto number = messageNumber(text);
    if (type == 3 && (number == 0 || number == 3)) {
        return number == 0 ? 0 : 2;
    }
    return std::nullopt;
}

/// The status if the message ended the process.
std::optional<int> handle(const Run& run, std::int32_t type, const std::string& text) {
    try {
        run.controller->onCopyData(type, text);
        return std::nullopt;
    } catch (const test::ProcessEnded& end) {
        return end.status;
    }
}

void check(std::string_view lines) {
    static Run run;
    while (!lines.empty()) {
        const std::string_view line = takeUpTo('\n', lines);
        const std::int32_t type = line.empty() ? -1 : line.front() - '0';
        const std::string text(line.substr(line.empty() ? 0 : 1));
        // Fatal errors and restart questions wait for the user, a question without its number is a
        // programming error, and of a type that came later nothing is said here.
        if (type == 5 || (type == 3 && !messageNumber(text)) || isBeyondTheModel(type)) {
            continue;
        }
        run.desktop.journal()->clear();
        const std::optional<int> end = handle(run, type, text);
        expect(end == expectedEnd(type, text), "a run ends where it is told to, and nowhere else");
        if (end) {
            return;
        }
        run.desktop.drainMainQueue();
        expect(run.desktop.journal()->entries() == expectedLines(run, type, text),
               "the window shows what the message says and nothing else");
    }
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
