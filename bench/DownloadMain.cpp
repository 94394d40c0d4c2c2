#include "bench/Measurement.h"
#include "bench/StallProbe.h"
#include "demo/RehearsalAuthorities.h"
#include "download/DownloadService.h"
#include "platform/Application.h"
#include "platform/Queue.h"

#include <cstdio>
#include <string>
#include <utility>

namespace {

using namespace orvane;

constexpr int kUsageStatus = 64;
constexpr int kFailureStatus = 70;
constexpr double kFullProgress = 100.0;

class QuietDelegate final : public platform::ApplicationDelegate {
public:
    void applicationDidFinishLaunching() override {}
    platform::TerminateReply applicationShouldTerminate() override { return platform::TerminateReply::now; }
    void applicationWillTerminate() override {}
};

/// Downloads once as soon as the window stands, shows the progress in its bar, and ends the process.
class Downloader final : public platform::ViewControllerBase {
public:
    Downloader(std::string url, std::string target) : url_(std::move(url)), target_(std::move(target)) {}

    void connectOutlets(const platform::MainWindowControls& controls) override {
        bar_ = controls.progressBar;
    }
    void awakeFromNib() override {}
    void viewDidLoad() override {}
    void viewWillAppear() override {}

    /// The window is painted before anything is measured.
    void viewDidAppear() override {
        platform::utilityQueueAsync([this] { platform::mainQueueAsync([this] { download(); }); });
    }

    void cancelButtonClicked() override {}
    std::string quitCommandTitle() override { return {}; }
    std::string languageTag() override { return {}; }

private:
    void download() {
        task_ = DownloadService::shared().download(
            {.url = url_, .cachePolicy = platform::CachePolicy::reloadIgnoringLocalCacheData}, target_);
        task_->progressHandler = [this](double fraction) {
            ++pieces_;
            if (const auto bar = bar_.lock()) {
                bar->setDoubleValue(fraction * kFullProgress);
            }
        };
        task_->completionHandler = [this](const ResultType<std::int64_t>& result) { end(result); };
        stalls_ = bench::watchMainThread();
        measurement_ = bench::Measurement();
        task_->resume();
    }

    void end(const ResultType<std::int64_t>& result) {
        if (const auto* error = std::get_if<platform::Error>(&result)) {
            std::fprintf(stderr, "BenchDownload: %s\n", error->localizedDescription().c_str());
            platform::endProcess(kFailureStatus);
        }
        measurement_.print(", \"bytes\": " + std::to_string(std::get<std::int64_t>(result)) +
                           ", \"pieces\": " + std::to_string(pieces_) +
                           ", \"longestEventWait\": " + std::to_string(stalls_->longestEventWait) +
                           ", \"longestItemWait\": " + std::to_string(stalls_->longestItemWait));
        platform::endProcess(0);
    }

    const std::string url_;
    const std::string target_;
    std::weak_ptr<platform::LevelIndicator> bar_;
    std::shared_ptr<DownloadTask> task_;
    std::shared_ptr<const bench::Stalls> stalls_;
    bench::Measurement measurement_;
    long pieces_ = 0;
};

} // namespace

/// BenchDownload URL FILE AUTHORITY
int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::fprintf(stderr, "usage: BenchDownload URL FILE AUTHORITY\n");
        return kUsageStatus;
    }
    demo::trustAuthoritiesIn(arguments[3]);
    QuietDelegate delegate;
    platform::applicationMain(argumentCount, arguments, "BenchDownload", delegate,
                              [&] { return std::make_shared<Downloader>(arguments[1], arguments[2]); });
    return 0;
}
