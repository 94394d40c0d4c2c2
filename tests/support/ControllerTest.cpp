#include "tests/support/ControllerTest.h"

#include "tests/support/RecordingControls.h"

#include <algorithm>
#include <sstream>

namespace orvane::test {

namespace {

namespace fs = std::filesystem;

/// A line of the log is its time, "HH:mm:ss: ", a text and CR LF; a text may hold line feeds of its own.
std::vector<std::string> textsOfLog(const std::string& log) {
    constexpr std::size_t kTimeLength = 10;
    std::vector<std::string> texts;
    std::size_t start = 0;
    for (std::size_t end = log.find("\r\n"); end != std::string::npos; end = log.find("\r\n", start)) {
        texts.push_back(log.substr(start, end - start).substr(kTimeLength));
        start = end + 2;
    }
    return texts;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

fs::path argumentsFileOf(const fs::path& engine) { return engine.string() + ".arguments"; }

} // namespace

ControllerTest::ControllerTest()
    : controls(makeRecordingControls(desktop.journal())),
      controller(std::make_shared<ViewController>(deployment.values)) {
    controller->connectOutlets(controls);
}

void ControllerTest::startUp(const std::vector<std::string>& options) {
    controller->awakeFromNib();
    controller->viewDidLoad();
    prepare(options);
}

void ControllerTest::prepare(const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"/somewhere/OrvaneBootstrap"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    desktop.setProcessArguments(arguments);
    controller->viewWillAppear();
}

void ControllerTest::forgetStartUp() {
    desktop.drainMainQueue();
    desktop.journal()->clear();
}

std::vector<std::string> ControllerTest::logLines() const {
    std::vector<fs::path> logs;
    for (const auto& entry : fs::recursive_directory_iterator(deployment.values.logRoot)) {
        if (entry.is_regular_file()) {
            logs.push_back(entry.path());
        }
    }
    EXPECT_EQ(logs.size(), 1U) << "logs in " << deployment.values.logRoot;
    return logs.empty() ? std::vector<std::string>() : textsOfLog(contentsOf(logs.front()));
}

bool ControllerTest::logHas(const std::string& line) const {
    const auto lines = logLines();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool ControllerTest::logHasLineStarting(const std::string& prefix) const {
    const auto lines = logLines();
    return std::any_of(lines.begin(), lines.end(),
                       [&prefix](const std::string& line) { return line.starts_with(prefix); });
}

std::string engineReporting(const std::string& version) {
    return "#!/bin/sh\n"
           "if [ \"$1\" = --version ]; then echo '" +
           version +
           "'; exit; fi\n"
           "printf '%s\\n' \"$@\" >\"$0.unfinished\"\n"
           "mv \"$0.unfinished\" \"$0.arguments\"\n";
}

std::vector<std::string> argumentsOf(const fs::path& engine, TestDesktop& desktop) {
    const fs::path file = argumentsFileOf(engine);
    desktop.runMainQueueUntil([&file] { return fs::exists(file); });
    return linesOf(contentsOf(file));
}

} // namespace orvane::test
