#pragma once

#include "download/DownloadService.h"
#include "model/DescribedEngine.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace orvane {

class Logger;
class Presentation;

/// What the download of an engine needs of the run that it belongs to. On the main thread, but for
/// `presentation` and `setOrvaneDownloadTask`, which the thread that starts the download calls too.
class EngineDownloadHost {
public:
    virtual Presentation& presentation() = 0;

    /// Keeps the task while the transfer runs; null lets go of it.
    virtual void setOrvaneDownloadTask(std::shared_ptr<DownloadTask> task) = 0;

    /// Moves the bar to a percentage, which is not clamped and may be infinite or no number.
    virtual void showDownloadProgress(double percentage) = 0;

    /// Whether the received file has the described digest.
    virtual bool orvaneChecksumsMatch() = 0;

    /// Makes the engine of the received file. Returns 0 on success; throws `platform::Error`.
    virtual int decryptOrvane(const std::filesystem::path& encryptedFile) = 0;

protected:
    EngineDownloadHost() = default;
    ~EngineDownloadHost() = default;
    EngineDownloadHost(const EngineDownloadHost&) = default;
    EngineDownloadHost& operator=(const EngineDownloadHost&) = default;
};

/// Brings the engine from the vendor's server to its place: makes the folder, starts the download and
/// returns. `timeout` is the longest wait for further data.
///
/// `completionHandler` is called at most once, on the main thread, when the engine lies verified and
/// deciphered at its place; every failure ends in a fatal error instead. The download holds the host weakly:
/// once it is gone, nothing is shown or acted on. Any thread but the session's.
void downloadEngine(const DescribedEngine& engine, std::chrono::seconds timeout,
                    const std::shared_ptr<Logger>& logger, const std::shared_ptr<EngineDownloadHost>& host,
                    std::function<void()> completionHandler);

} // namespace orvane
