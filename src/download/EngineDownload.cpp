#include "download/EngineDownload.h"

#include "log/Logger.h"
#include "model/Presentation.h"
#include "platform/Error.h"
#include "platform/Files.h"

#include <cstdint>
#include <utility>

namespace orvane {

namespace {

constexpr double kFullProgress = 100.0;

/// False after a fatal error.
bool decrypt(const DescribedEngine& engine, const std::shared_ptr<Logger>& logger, EngineDownloadHost& host) {
    writeProgramLog(logger, "Orvane is encrypted, decrypting it");
    try {
        const int code = host.decryptOrvane(engine.downloadLocation());
        if (code == 0) {
            writeProgramLog(logger, "Orvane decrypted");
            return true;
        }
        writeProgramLog(logger, "Unable to decrypt orvane: code " + std::to_string(code));
    } catch (const platform::Error& error) {
        writeProgramLog(logger, "Unable to decrypt orvane: " + error.localizedDescription());
    }
    host.presentation().showFailureAndQuit();
    return false;
}

/// What failed on the way is told apart in the log alone; the user reads one of three texts.
void downloadEnded(const ResultType<std::int64_t>& result, const DescribedEngine& engine,
                   const std::shared_ptr<Logger>& logger, EngineDownloadHost& host,
                   const std::function<void()>& completionHandler) {
    Presentation& presentation = host.presentation();
    if (const platform::Error* const error = errorOf(result)) {
        writeProgramLog(logger, "Unable to download orvane: " + error->localizedDescription());
        presentation.showFatalErrorAndQuit(presentation.loadTranslatedString(text::kNoConnection));
    } else {
        writeProgramLog(logger, "Orvane download finished");
        if (!host.orvaneChecksumsMatch()) {
            presentation.showFatalErrorAndQuit(presentation.loadTranslatedString(text::kDownloadIncorrect));
        } else if (!engine.isEncrypted) {
            writeProgramLog(logger, "Orvane is not encrypted");
            completionHandler();
        } else if (decrypt(engine, logger, host)) {
            completionHandler();
        } else {
            return;
        }
    }
    host.setOrvaneDownloadTask(nullptr);
}

} // namespace

void downloadEngine(const DescribedEngine& engine, std::chrono::seconds timeout,
                    const std::shared_ptr<Logger>& logger, const std::shared_ptr<EngineDownloadHost>& host,
                    std::function<void()> completionHandler) {
    try {
        platform::createDirectoryWithIntermediates(engine.location.parent_path());
    } catch (const platform::Error& error) {
        writeProgramLog(logger, "Unable to create orvane directory: " + error.localizedDescription());
        host->presentation().showFailureAndQuit();
        return;
    }
    const platform::UrlRequest request{
        .url = engine.downloadUrl(),
        .cachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData,
        .timeoutInterval = timeout,
    };
    std::shared_ptr<DownloadTask> task;
    try {
        task = DownloadService::shared().download(request, engine.downloadLocation());
    } catch (const platform::Error& error) {
        writeProgramLog(logger, "Unable to download orvane: " + error.localizedDescription());
        host->presentation().showFailureAndQuit();
        return;
    }
    host->setOrvaneDownloadTask(task);
    const std::weak_ptr<EngineDownloadHost> weakHost = host;
    task->completionHandler = [weakHost, engine, logger, completionHandler = std::move(completionHandler)](
                                  const ResultType<std::int64_t>& result) {
        if (const auto waiting = weakHost.lock()) {
            downloadEnded(result, engine, logger, *waiting, completionHandler);
        }
    };
    task->progressHandler = [weakHost](double fraction) {
        if (const auto waiting = weakHost.lock()) {
            waiting->showDownloadProgress(fraction * kFullProgress);
        }
    };
    task->task->resume();
}

} // namespace orvane
