#include "app/ViewController.h"

#include "download/DownloadService.h"
#include "log/Logger.h"
#include "model/TextIdentifiers.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/ProgrammingError.h"
#include "platform/Url.h"
#include "verify/Crypto.h"

#include <utility>
#include <variant>

namespace orvane {

namespace {

constexpr double kFullProgress = 100.0;

/// Code 0 stands for success. The flow lets only these two ciphers come this far.
int decrypt(const FileDownloadInfo& info, const std::filesystem::path& plainFile,
            const std::filesystem::path& encryptedFile) {
    if (info.EncryptionAlgorithm == "xor") {
        return decryptXORFile(info, plainFile, encryptedFile);
    }
    if (info.EncryptionAlgorithm == "pkg") {
        return decryptPKGFile(info, encryptedFile);
    }
    return 0;
}

} // namespace

void ViewController::downloadOrvane(std::function<void()> completionHandler) {
    try {
        platform::createDirectoryWithIntermediates(orvaneUrl().parent_path());
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to create orvane directory: " + error.localizedDescription());
        showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed)));
        return;
    }
    const DescribedEngine engine = describedEngine();
    startDownload(engine.downloadUrl(), engine.downloadLocation(), std::move(completionHandler));
}

void ViewController::startDownload(const std::string& sourceUrl, const std::filesystem::path& target,
                                   std::function<void()> completionHandler) {
    const platform::UrlRequest request{
        .url = sourceUrl,
        .cachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData,
        .timeoutInterval = deployment_.downloadTimeout,
    };
    std::shared_ptr<DownloadTask> task;
    try {
        task = DownloadService::shared().download(request, target);
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to download orvane: " + error.localizedDescription());
        showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed)));
        return;
    }
    orvaneDownloadTask.store(task);
    const std::weak_ptr<ViewController> weakSelf = weak_from_this();
    task->completionHandler = [weakSelf, target, completionHandler = std::move(completionHandler)](
                                  const ResultType<std::int64_t>& result) {
        if (const auto self = weakSelf.lock()) {
            self->downloadEnded(result, target, completionHandler);
        }
    };
    task->progressHandler = [weakSelf](double fraction) {
        if (const auto self = weakSelf.lock()) {
            self->showDownloadProgress(fraction);
        }
    };
    task->resume();
}

void ViewController::showDownloadProgress(double fraction) {
    const auto bar = progressBar.lock();
    if (!bar) {
        programmingError("the progress bar is gone");
    }
    bar->setDoubleValue(fraction * kFullProgress);
}

/// What failed on the way is told apart in the log alone; the user reads one of three texts.
void ViewController::downloadEnded(const ResultType<std::int64_t>& result,
                                   const std::filesystem::path& target,
                                   const std::function<void()>& completionHandler) {
    if (const auto* error = std::get_if<platform::Error>(&result)) {
        writeProgramLog("Unable to download orvane: " + error->localizedDescription());
        showFatalErrorAndQuit(loadTranslatedString(text::kNoConnection));
    } else {
        writeProgramLog("Orvane download finished");
        if (!orvaneChecksumsMatch()) {
            showFatalErrorAndQuit(loadTranslatedString(text::kDownloadIncorrect));
        } else if (!isOrvaneEncrypted) {
            writeProgramLog("Orvane is not encrypted");
            completionHandler();
        } else if (decryptOrvane(target)) {
            completionHandler();
        } else {
            return;
        }
    }
    orvaneDownloadTask.store(nullptr);
}

/// False after a fatal error.
bool ViewController::decryptOrvane(const std::filesystem::path& encryptedFile) {
    writeProgramLog("Orvane is encrypted, decrypting it");
    try {
        const int code = decrypt(orvaneDescription(), orvaneUrl(), encryptedFile);
        if (code == 0) {
            writeProgramLog("Orvane decrypted");
            return true;
        }
        writeProgramLog("Unable to decrypt orvane: code " + std::to_string(code));
    } catch (const platform::Error& error) {
        writeProgramLog("Unable to decrypt orvane: " + error.localizedDescription());
    }
    showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed)));
    return false;
}

} // namespace orvane
