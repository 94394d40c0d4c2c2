#include "app/ViewController.h"

#include "log/Logger.h"
#include "model/ExecutableBit.h"
#include "model/TextIdentifiers.h"
#include "platform/Bundle.h"
#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/Process.h"
#include "platform/ProgrammingError.h"
#include "platform/Url.h"
#include "platform/Utf8.h"
#include "verify/Crypto.h"
#include "verify/Versions.h"

namespace orvane {

namespace {

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
        programmingError("the engine could not be asked for its version: " + error.localizedDescription());
    }
}

} // namespace

bool ViewController::orvaneMajorVersionMatches() {
    writeProgramLog("Checking if major versions match");
    const auto version = platform::ownVersion();
    if (!version) {
        programmingError("this program has no version of its own");
    }
    const std::string own = majorVersion(*version);
    const std::string described = majorVersion(orvaneDescription().Version);
    writeProgramLog("bootstrapper major version is " + own + " and orvane major version is " + described);
    return own == described;
}

std::string ViewController::getCurrentOrvaneVersion() {
    const std::filesystem::path executable = orvaneUrl();
    platform::Process process;
    process.setLaunchPath(executable);
    process.setArguments({"--version"});
    writeProgramLog("Spawning orvane with args --version");
    ensureExecutable(executable);
    process.pipeStandardOutput();
    launchVersionQuery(process);

    const Bytes output = process.readStandardOutputToEnd();
    const std::string_view text = textOf(output);
    if (!isValidUtf8(text)) {
        throw platform::Error("", 1, "cannot retrieve process stdout");
    }
    return withoutLineFeedsAround(std::string(text));
}

bool ViewController::orvaneVersionsMatch() {
    writeProgramLog("Checking if orvane versions match");
    try {
        const std::string local = getCurrentOrvaneVersion();
        const std::string remote = orvaneDescription().Version;
        writeProgramLog("remote version is " + remote + " and local is " + local);
        // A newer engine than the described one is as good.
        return compareVersions(local, remote) != ComparisonResult::ascending;
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to retrieve file version: " + error.localizedDescription());
        return false;
    }
}

std::filesystem::path ViewController::encryptedOrvaneUrl() const {
    const std::string location =
        orvaneUrl().string() + encryptedFileSuffix(orvaneDescription().EncryptionAlgorithm);
    if (!parsesAsUrl(location)) {
        programmingError("the enciphered engine's location is not a URL: " + location);
    }
    return location;
}

bool ViewController::orvaneChecksumsMatch() {
    writeProgramLog("Checking if orvane checksums match");
    const FileDownloadInfo info = orvaneDescription();
    const bool encrypted = isOrvaneEncrypted;
    const std::filesystem::path file = encrypted ? encryptedOrvaneUrl() : orvaneUrl();
    try {
        const std::string checksum = computeFileChecksum(file, info.ChecksumAlgorithm);
        // The line shows the enciphered file's digest in both cases; support compares logs by it.
        writeProgramLog((encrypted ? "encrypted" : "decrypted") + std::string(" orvane local checksum is ") +
                        checksum + ", remote checksum is" + info.EncryptedFileChecksum);
        return checksum == (encrypted ? info.EncryptedFileChecksum : info.Checksum);
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to compute file checksum: " + error.localizedDescription());
        showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed)));
        return false;
    }
}

} // namespace orvane
