#include "app/ViewController.h"

#include "log/Logger.h"
#include "model/TextIdentifiers.h"
#include "platform/Activity.h"
#include "platform/Alert.h"
#include "platform/Files.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"

namespace orvane {

namespace {

/// "varlen" names the folder "Varlen".
std::string capitalised(std::string word) {
    if (!word.empty() && word.front() >= 'a' && word.front() <= 'z') {
        word.front() = static_cast<char>(word.front() - 'a' + 'A');
    }
    return word;
}

} // namespace

void ViewController::viewDidAppear() {
    const auto bar = progressBar.lock();
    if (!bar) {
        programmingError("the progress bar is gone");
    }
    bar->setMinValue(0.0);
    bar->setMaxValue(100.0);
    bar->setDoubleValue(0.0);

    // Comes to the front once, then leaves the user alone.
    platform::activateIgnoringOtherApps(true);
    platform::activateIgnoringOtherApps(false);

    if (const auto window = window_.lock()) {
        window->setMovableByWindowBackground(true);
    }
    platform::beginActivity(uninstall ? "Uninstallation in progress" : "Installation in progress");
    platform::utilityQueueAsync([weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->decide();
        }
    });
}

void ViewController::decide() {
    switch (initializeDownloads()) {
    case DownloadDecision::download:
        writeProgramLog("Downloading latest orvane");
        downloadOrvane([weakSelf = weak_from_this()] {
            if (const auto self = weakSelf.lock()) {
                self->spawnOrvane();
            }
        });
        break;
    case DownloadDecision::useExisting:
        writeProgramLog("Using existing orvane");
        spawnOrvane();
        break;
    case DownloadDecision::giveUp:
        showFatalErrorAndQuit(loadTranslatedString(text::kInstallerTooOld));
        break;
    case DownloadDecision::noDescription:
        writeProgramLog("Cannot download latest orvane, trying use existing orvane");
        if (platform::fileExists(orvaneUrl())) {
            spawnOrvane();
        } else {
            showFatalErrorAndQuit(loadTranslatedString(text::kNoConnection));
        }
        break;
    }
}

DownloadDecision ViewController::initializeDownloads() {
    writeProgramLog("Initializing orvane download");
    isOrvaneEncrypted = false;
    const std::string& product = deployment_.productWord;
    orvaneExeUrl.store(deployment_.engineRoot / capitalised(product) / "orvane" / (product + "-setup"));
    writeProgramLog("Orvane path is " + orvaneUrl().string());

    if (!downloadFileInfo()) {
        return DownloadDecision::noDescription;
    }
    if (!orvaneMajorVersionMatches()) {
        return tryUseExistingOrvane();
    }
    // A file with the right digest is the engine, whatever version it would report.
    if (orvaneChecksumsMatch() || orvaneVersionsMatch()) {
        return DownloadDecision::useExisting;
    }
    const std::string algorithm = orvaneDescription().EncryptionAlgorithm;
    if (algorithm.empty()) {
        return DownloadDecision::download;
    }
    if (algorithm == "xor" || algorithm == "pkg") {
        isOrvaneEncrypted = true;
        return DownloadDecision::download;
    }
    writeProgramLog("Encryption algorithm " + algorithm + " is unsupported");
    return tryUseExistingOrvane();
}

DownloadDecision ViewController::tryUseExistingOrvane() {
    // An installation never starts an engine that was not checked.
    if (!uninstall) {
        return DownloadDecision::giveUp;
    }
    if (platform::fileExists(orvaneUrl())) {
        writeProgramLog("process is uninstallation and orvane exists on the machine");
        return DownloadDecision::useExisting;
    }
    writeProgramLog("process is uninstallation, but orvane does not exist on the machine");
    return DownloadDecision::giveUp;
}

void ViewController::cancelButtonClicked() {
    const std::int64_t question =
        uninstall ? text::kAbortUninstallationQuestion : text::kAbortInstallationQuestion;
    const platform::Alert alert{
        .messageText = loadTranslatedString(question),
        .buttonTitles = {loadTranslatedString(text::kNo), loadTranslatedString(text::kYes)}};
    if (alert.runModal() != platform::kAlertSecondButtonReturn) {
        return;
    }
    interruptOrvane();
    platform::endProcess(2);
}

std::filesystem::path ViewController::orvaneUrl() const {
    const auto url = orvaneExeUrl.load();
    if (!url) {
        programmingError("the engine's location is needed before it was built");
    }
    return *url;
}

FileDownloadInfo ViewController::orvaneDescription() const {
    const auto info = orvaneDownloadInfo.load();
    if (!info) {
        programmingError("the engine's description is needed before it was fetched");
    }
    return *info;
}

} // namespace orvane
