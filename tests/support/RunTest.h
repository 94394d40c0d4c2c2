#pragma once

#include "tests/support/ControllerTest.h"
#include "tests/support/ScriptedServer.h"

#include <string>

namespace orvane::test {

/// A run in the midst of its work: texts in French, a log that is still empty, the engine's location known,
/// and a server behind all addresses that takes crash reports. Whatever else the server shall answer is the
/// test's to say.
class RunTest : public ControllerTest {
protected:
    static constexpr char kCrashReport[] = "/crashreport";
    static constexpr char kInstallationFailed[] = "L'installation a échoué";
    static constexpr char kUninstallationFailed[] = "La désinstallation a échoué";

    RunTest();

    /// Goes on as a run that never had a log.
    void withoutLog() { controller->logger.store(nullptr); }

    /// Acknowledges the fatal alert, which must be the only one, show `message` and end the run with 1.
    void expectFatalError(const std::string& message);

    ScriptedServer server;
};

} // namespace orvane::test
