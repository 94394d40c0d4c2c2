#pragma once

#include "platform/Error.h"
#include "platform/ResultType.h"
#include "platform/UrlSession.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace orvane {

/// The target file could not be opened. It has no description of its own; a log shows the platform's generic
/// wording.
class DownloadError : public platform::Error {
public:
    static DownloadError targetFileError(std::string text);

    const std::string& text() const { return text_; }

private:
    explicit DownloadError(std::string text);

    std::string text_;
};

/// One download as its caller sees it. Set the handlers after `DownloadService::download` has returned, then
/// resume `task`. Both are called on the main thread: the progress handler with the fraction received once
/// for each piece (negative, infinite or NaN while the length is not known; of the pieces received while an
/// alert holds the main queue, for the last one alone), then the completion handler exactly once.
class DownloadTask {
public:
    virtual ~DownloadTask() = default;
    DownloadTask(const DownloadTask&) = delete;
    DownloadTask& operator=(const DownloadTask&) = delete;

    std::function<void(const ResultType<std::int64_t>&)> completionHandler; ///< with the bytes written
    std::function<void(double)> progressHandler;
    const std::shared_ptr<platform::UrlSessionDataTask> task; ///< the transfer itself

    // The transfer's own operations, on `task`. Any thread.
    virtual void resume() = 0;
    virtual void suspend() = 0;
    virtual void cancel() = 0;

protected:
    explicit DownloadTask(std::shared_ptr<platform::UrlSessionDataTask> dataTask)
        : task(std::move(dataTask)) {}
};

/// The download itself. Shared by the service while it is in flight and by its caller; prints a line on
/// standard output when the last of them lets go.
class GenericDownloadTask final : public DownloadTask {
public:
    GenericDownloadTask(std::shared_ptr<platform::UrlSessionDataTask> dataTask, std::FILE* openTargetFile);
    ~GenericDownloadTask() override;

    void resume() override { task->resume(); }
    void suspend() override { task->suspend(); }
    void cancel() override { task->cancel(); }

    // Changed on the session's queue alone.
    std::int64_t expectedContentLength = 0; ///< -1 when the server announced none
    std::FILE* targetFileHandle;            ///< closed at completion, null from then on
    std::int64_t writtenBytes = 0;

    /// The stream's. Larger than any chunk that a session delivers, so a chunk is one write; an unbuffered
    /// stream of macOS writes 1024 bytes at a time.
    static constexpr std::size_t kTargetFileBufferSize = std::size_t{1} << 20;
    std::unique_ptr<char[]> targetFileBuffer;
};

/// Streams response bodies straight into files; knows nothing of engines, digests or windows.
///
/// `download` may be called from any thread. Response, data and completion run on the session's own serial
/// queue, which waits when the main thread cannot keep up with the progress. HTTP statuses are not looked at,
/// failed writes are not detected, partial files stay.
class DownloadService final : public platform::UrlSessionDataDelegate {
public:
    /// The service of this process, made on first use and never destroyed.
    static DownloadService& shared();

    static std::shared_ptr<DownloadService> create();

    /// A new download into `targetFileURL`, created or truncated, not yet started. Throws
    /// `DownloadError::targetFileError` when the file cannot be opened; nothing else has changed then.
    std::shared_ptr<DownloadTask> download(const platform::UrlRequest& request,
                                           const std::filesystem::path& targetFileURL);

    platform::ResponseDisposition didReceiveResponse(platform::UrlSessionDataTask& dataTask,
                                                     std::int64_t expectedContentLength) override;
    void didReceiveData(platform::UrlSessionDataTask& dataTask, ByteView data) override;
    void didComplete(platform::UrlSessionDataTask& task,
                     const std::optional<platform::Error>& error) override;

private:
    DownloadService() = default;

    std::shared_ptr<GenericDownloadTask> taskFor(const platform::UrlSessionDataTask& dataTask) const;
    void remove(const std::shared_ptr<GenericDownloadTask>& task);

    std::unique_ptr<platform::UrlSession> session_;
    mutable std::mutex downloadTasksMutex_;
    std::vector<std::shared_ptr<GenericDownloadTask>> downloadTasks_; ///< in flight
};

} // namespace orvane
