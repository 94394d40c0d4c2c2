#include "tools/FetchedFile.h"

#include "config/Deployment.h"
#include "platform/Files.h"
#include "platform/UrlSession.h"

#include <future>
#include <memory>

namespace orvane::tools {
namespace {

class FileWriter final : public platform::UrlSessionDataDelegate {
public:
    FileWriter(const std::filesystem::path& file, std::string name, const ProgressHandler& progress)
        : name_(std::move(name)), progress_(progress) {
        platform::writeNewFile(file, {});
        file_ = platform::FileHandle::forWriting(file);
    }

    std::optional<platform::Error> waitForEnd() { return end_.get_future().get(); }

    platform::ResponseDisposition didReceiveResponse(platform::UrlSessionDataTask& /*task*/,
                                                     std::int64_t expectedContentLength) override {
        expected_ = expectedContentLength;
        return platform::ResponseDisposition::allow;
    }

    void didReceiveData(platform::UrlSessionDataTask& task, ByteView data) override {
        try {
            file_->write(data);
        } catch (const platform::Error& error) {
            writeError_ = error;
            task.cancel();
            return;
        }
        received_ += static_cast<std::int64_t>(data.size());
        report(progress_, {.what = name_,
                           .done = received_,
                           .total = expected_ > 0 ? std::optional(expected_) : std::nullopt});
    }

    void didComplete(platform::UrlSessionDataTask& /*task*/,
                     const std::optional<platform::Error>& error) override {
        end_.set_value(writeError_ ? writeError_ : error);
    }

private:
    const std::string name_;
    const ProgressHandler& progress_;
    std::optional<platform::FileHandle> file_;
    std::int64_t expected_ = -1;
    std::int64_t received_ = 0;
    std::optional<platform::Error> writeError_;
    std::promise<std::optional<platform::Error>> end_;
};

} // namespace

std::optional<platform::Error> fetchFile(const std::string& url, const std::filesystem::path& file,
                                         const ProgressHandler& progress) {
    const auto writer = std::make_shared<FileWriter>(file, "fetching " + url, progress);
    const auto session = platform::UrlSession::create(
        {.requestCachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData, .urlCache = false},
        writer);
    session
        ->dataTask({.url = url,
                    .cachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData,
                    .timeoutInterval = productDeployment().downloadTimeout})
        ->resume();
    return writer->waitForEnd();
}

} // namespace orvane::tools
