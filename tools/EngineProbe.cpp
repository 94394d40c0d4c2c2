#include "tools/EngineProbe.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "tools/OptionChecks.h"
#include "tools/ProgramFormat.h"
#include "tools/ToolError.h"
#include "tools/WorkFolder.h"

#include <chrono>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuseEngine(const fs::path& engine, const std::string& text) {
    throw ToolError(ExitStatus::badData, engine.string() + " " + text);
}

void checkProgram(const fs::path& engine, const std::string& system) {
    const auto program = programIn(engine);
    if (!program) {
        refuseEngine(engine, "is not an executable: unknown file signature");
    }
    if (!program->runsOn(system)) {
        refuseEngine(engine, "is " + program->kind + ", not for " + system + " (see --system)");
    }
}

/// As bootstrappers read it: without line feeds at both ends, and unchanged otherwise.
std::string trimmed(const std::string& output) {
    const std::size_t first = output.find_first_not_of('\n');
    return first == std::string::npos ? "" : output.substr(first, output.find_last_not_of('\n') - first + 1);
}

std::string printedVersion(const PublishOptions& options, const fs::path& engine) {
    // Exit statuses of timeout(1).
    constexpr int kCannotRun = 126;
    constexpr int kNotFound = 127;

    const WorkFolder folder;
    const fs::path copy = folder.path() / "varlen-setup";
    fs::copy_file(engine, copy);
    platform::setPosixPermissions(copy, 0744);
    platform::Process process;
    process.setLaunchPath("/usr/bin/timeout");
    const std::string seconds = std::to_string(options.versionWait.count());
    process.setArguments({"--kill-after=1", seconds, copy.string(), "--version"});
    process.pipeStandardOutput();
    const auto start = std::chrono::steady_clock::now();
    process.launch();
    const std::string output(textOf(process.readStandardOutputToEnd()));
    const int status = process.waitUntilExit();
    if (std::chrono::steady_clock::now() - start >= options.versionWait) {
        refuseEngine(engine, "--version did not end within " + seconds +
                                 " seconds; it must print the version and exit");
    }
    if (status == kCannotRun || status == kNotFound) {
        refuseEngine(engine, "cannot be run here; --no-run publishes it without running it");
    }
    return trimmed(output);
}

} // namespace

std::string checkedEngineVersion(const PublishOptions& options) {
    const fs::path& engine = options.cipher == Cipher::package ? options.plainEngine : options.input;
    try {
        checkProgram(engine, options.system);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::noInput, error.localizedDescription());
    }
    if (!options.run) {
        return options.version;
    }
    std::string version;
    try {
        version = printedVersion(options, engine);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    } catch (const fs::filesystem_error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.what());
    }
    if (!checkVersion(version).empty()) {
        refuseEngine(engine, "--version prints \"" + version + "\", not a dotted version such as 14.2.7");
    }
    if (!options.version.empty() && options.version != version) {
        refuseEngine(engine, "--version prints " + version + ", but --version says " + options.version);
    }
    return version;
}

} // namespace orvane::tools
