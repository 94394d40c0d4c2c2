#pragma once

#include "app/ViewController.h"
#include "tests/support/DeathTest.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TestDeployment.h"
#include "tests/support/TestDesktop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orvane::test {

/// A controller in a window of recording controls, for a user who reads French. Nobody serves the addresses
/// of its deployment.
class ControllerTest : public DeathTest {
protected:
    ControllerTest();

    /// Has the window loaded and shown up to `viewWillAppear`, started with these options. What was queued
    /// stays so.
    void startUp(const std::vector<std::string>& options = {});

    /// The last step of `startUp` alone: a run whose engine is not heard and whose window is not styled.
    void prepare(const std::vector<std::string>& options = {});

    /// The journal's lines from here on are the test's.
    void forgetStartUp();

    std::vector<std::string> journal() const { return desktop.journal()->entries(); }

    /// What the run's log says so far, each line without its time. Fails the test when there is not exactly
    /// one log.
    std::vector<std::string> logLines() const;
    bool logHas(const std::string& line) const;
    bool logHasLineStarting(const std::string& prefix) const;

    TestDeployment deployment;
    EnvironmentVariable languages{"LANGUAGE", "fr"};
    TestDesktop desktop;
    platform::MainWindowControls controls;
    std::shared_ptr<ViewController> controller;
};

/// The program of an engine that answers `version` to "--version"; started otherwise it writes its arguments,
/// one a line, into the file beside it that `argumentsOf` reads.
std::string engineReporting(const std::string& version);

/// Waits until the engine at `engine` was started, and returns its arguments; runs the main queue meanwhile.
std::vector<std::string> argumentsOf(const std::filesystem::path& engine, TestDesktop& desktop);

} // namespace orvane::test
