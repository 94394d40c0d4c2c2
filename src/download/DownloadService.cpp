#include "download/DownloadService.h"

#include "platform/Files.h"
#include "platform/Queue.h"
#include "platform/StandardOutput.h"
#include "platform/WindowUpdates.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

constexpr char kErrorDomain[] = "OrvaneBootstrap.DownloadError";

std::FILE* openTarget(const std::filesystem::path& targetFile) {
    try {
        return platform::openForDownload(targetFile);
    } catch (const platform::Error&) {
        throw DownloadError::targetFileError("Could not open target file");
    }
}

} // namespace

DownloadError::DownloadError(std::string text)
    : Error(kErrorDomain, 0, platform::genericErrorDescription(kErrorDomain, 0)), text_(std::move(text)) {}

DownloadError DownloadError::targetFileError(std::string text) { return DownloadError(std::move(text)); }

GenericDownloadTask::GenericDownloadTask(std::shared_ptr<platform::UrlSessionDataTask> dataTask,
                                         std::FILE* openTargetFile)
    : DownloadTask(std::move(dataTask)),
      targetFileHandle(openTargetFile),
      targetFileBuffer(std::make_unique<char[]>(kTargetFileBufferSize)) {
    if (targetFileHandle != nullptr) {
        std::setvbuf(targetFileHandle, targetFileBuffer.get(), _IOFBF, kTargetFileBufferSize);
    }
}

GenericDownloadTask::~GenericDownloadTask() {
    if (targetFileHandle != nullptr) {
        // The stream stays open and the C library uses its buffer until the process ends.
        static_cast<void>(targetFileBuffer.release());
    }
    platform::printLine("Deinit: " + task->originalRequestUrl().value_or(""));
}

DownloadService& DownloadService::shared() {
    // Never destroyed, so that no callback meets a service that the end of the process has taken away.
    static const auto* const service = new std::shared_ptr<DownloadService>(create());
    return **service;
}

std::shared_ptr<DownloadService> DownloadService::create() {
    std::shared_ptr<DownloadService> service(new DownloadService());
    service->session_ = platform::UrlSession::create(
        {.requestCachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData, .urlCache = false},
        service);
    return service;
}

std::shared_ptr<DownloadTask> DownloadService::download(const platform::UrlRequest& request,
                                                        const std::filesystem::path& targetFileURL) {
    auto dataTask = session_->dataTask(request);
    std::FILE* const targetFile = openTarget(targetFileURL);
    auto task = std::make_shared<GenericDownloadTask>(std::move(dataTask), targetFile);
    const std::lock_guard lock(downloadTasksMutex_);
    downloadTasks_.push_back(task);
    return task;
}

platform::ResponseDisposition DownloadService::didReceiveResponse(platform::UrlSessionDataTask& dataTask,
                                                                  std::int64_t expectedContentLength) {
    const auto task = taskFor(dataTask);
    if (!task) {
        return platform::ResponseDisposition::cancel;
    }
    task->expectedContentLength = expectedContentLength;
    return platform::ResponseDisposition::allow;
}

void DownloadService::didReceiveData(platform::UrlSessionDataTask& dataTask, ByteView data) {
    const auto task = taskFor(dataTask);
    if (!task) {
        return;
    }
    std::fwrite(data.data(), 1, data.size(), task->targetFileHandle);
    std::fflush(task->targetFileHandle); // the file always holds all that has arrived
    task->writtenBytes += static_cast<std::int64_t>(data.size());
    const double progress =
        static_cast<double>(task->writtenBytes) / static_cast<double>(task->expectedContentLength);
    platform::submitUpdate(task.get(), [task, progress] {
        if (task->progressHandler) {
            task->progressHandler(progress);
        }
    });
    platform::waitForRoom();
}

void DownloadService::didComplete(platform::UrlSessionDataTask& completedTask,
                                  const std::optional<platform::Error>& error) {
    const auto task = taskFor(completedTask);
    if (!task) {
        return;
    }
    std::fclose(std::exchange(task->targetFileHandle, nullptr));
    remove(task);
    const ResultType<std::int64_t> result =
        error ? ResultType<std::int64_t>(*error) : ResultType<std::int64_t>(task->writtenBytes);
    platform::mainQueueAsync([task, result] {
        if (task->completionHandler) {
            task->completionHandler(result);
        }
    });
}

std::shared_ptr<GenericDownloadTask>
DownloadService::taskFor(const platform::UrlSessionDataTask& dataTask) const {
    const std::lock_guard lock(downloadTasksMutex_);
    const auto found = std::find_if(downloadTasks_.begin(), downloadTasks_.end(),
                                    [&dataTask](const auto& task) { return task->task.get() == &dataTask; });
    return found == downloadTasks_.end() ? nullptr : *found;
}

void DownloadService::remove(const std::shared_ptr<GenericDownloadTask>& task) {
    const std::lock_guard lock(downloadTasksMutex_);
    downloadTasks_.erase(std::find(downloadTasks_.begin(), downloadTasks_.end(), task));
}

} // namespace orvane
