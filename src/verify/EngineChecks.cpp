#include "verify/EngineChecks.h"

#include "log/Logger.h"
#include "model/ExecutableBit.h"
#include "model/Presentation.h"
#include "platform/Bundle.h"
#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/Process.h"
#include "platform/ProgrammingError.h"
#include "platform/Utf8.h"
#include "verify/Crypto.h"
#include "verify/Versions.h"

#include <utility>

namespace orvane {

namespace {

/// In bytes. A deliberate limit: more is no version, so a faulty engine cannot fill the memory.
constexpr std::size_t kLongestVersion = std::size_t{64} << 10;

std::string withoutLineFeedsAround(const std::string& text) {
    const std::size_t first = text.find_first_not_of('\n');
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of('\n') - first + 1);
}

/// Only that the file cannot be run at all ends up here; it then has no business being the engine.
void launchVersionQuery(platform::Process& process) {
    try {
        process.launch();
    } catch (const platform::Error& error) {
        invalidInput("the engine could not be asked for its version: " + error.localizedDescription());
    }
}

} // namespace

EngineChecks::EngineChecks(DescribedEngine engine, std::shared_ptr<Logger> logger, Presentation& presentation)
    : engine_(std::move(engine)), logger_(std::move(logger)), presentation_(presentation) {}

bool EngineChecks::orvaneMajorVersionMatches() const {
    writeProgramLog(logger_, "Checking if major versions match");
    const auto version = platform::ownVersion();
    if (!version) {
        programmingError("this program has no version of its own");
    }
    const std::string own = majorVersion(*version);
    const std::string described = majorVersion(engine_.info.Version);
    writeProgramLog(logger_,
                    "bootstrapper major version is " + own + " and orvane major version is " + described);
    return own == described;
}

std::string EngineChecks::getCurrentOrvaneVersion() const {
    platform::Process process;
    process.setLaunchPath(engine_.location);
    process.setArguments({"--version"});
    writeProgramLog(logger_, "Spawning orvane with args --version");
    ensureExecutable(engine_.location);
    process.pipeStandardOutput();
    launchVersionQuery(process);

    const Bytes output = process.readStandardOutputToEnd(kLongestVersion + 1);
    const std::string_view text = textOf(output);
    if (text.size() > kLongestVersion || !isValidUtf8(text)) {
        throw platform::Error("", 1, "cannot retrieve process stdout");
    }
    return withoutLineFeedsAround(std::string(text));
}

bool EngineChecks::orvaneVersionsMatch() const {
    writeProgramLog(logger_, "Checking if orvane versions match");
    try {
        const std::string local = getCurrentOrvaneVersion();
        const std::string& remote = engine_.info.Version;
        writeProgramLog(logger_, "remote version is " + remote + " and local is " + local);
        // A newer engine than the described one is as good.
        return compareVersions(local, remote) != ComparisonResult::ascending;
    } catch (const platform::Error& error) {
        writeProgramLog(logger_, "Unable to retrieve file version: " + error.localizedDescription());
        return false;
    }
}

bool EngineChecks::orvaneChecksumsMatch() const {
    writeProgramLog(logger_, "Checking if orvane checksums match");
    const std::filesystem::path file = engine_.downloadLocation();
    try {
        const std::string checksum = computeFileChecksum(file, engine_.info.ChecksumAlgorithm);
        // The line shows the enciphered file's digest in both cases; support compares logs by it.
        writeProgramLog(logger_, (engine_.isEncrypted ? "encrypted" : "decrypted") +
                                     std::string(" orvane local checksum is ") + checksum +
                                     ", remote checksum is" + engine_.info.EncryptedFileChecksum);
        return checksum == engine_.downloadChecksum();
    } catch (const platform::Error& error) {
        writeProgramLog(logger_, "Unable to compute file checksum: " + error.localizedDescription());
        presentation_.showFailureAndQuit();
        return false;
    }
}

} // namespace orvane
