#include "platform/UrlSession.h"

#include "platform/OpenSsl_linux.h"
#include "platform/UrlDataTask_linux.h"
#include "platform/UrlWorker_linux.h"

#include <csignal>
#include <curl/curl.h>
#include <mutex>
#include <utility>

namespace orvane::platform {

namespace {

void prepareClient() {
    static std::once_flag once;
    std::call_once(once, [] {
        prepareOpenSsl();
        curl_global_init(CURL_GLOBAL_DEFAULT);
        // The library leaves this to us, since it may not touch signals in a program with threads: a
        // connection that the server has closed must not end the process.
        std::signal(SIGPIPE, SIG_IGN);
    });
}

/// The client library keeps no answers, so every cache policy already holds.
class LinuxUrlSession final : public UrlSession {
public:
    explicit LinuxUrlSession(std::weak_ptr<UrlSessionDataDelegate> delegate)
        : worker_(std::make_shared<UrlWorker>(std::move(delegate))) {}
    ~LinuxUrlSession() override { worker_->sessionIsGone(); }
    LinuxUrlSession(const LinuxUrlSession&) = delete;
    LinuxUrlSession& operator=(const LinuxUrlSession&) = delete;

    std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request) override {
        return std::make_shared<UrlDataTask>(std::move(request), worker_);
    }

private:
    const std::shared_ptr<UrlWorker> worker_;
};

} // namespace

std::unique_ptr<UrlSession> UrlSession::create(const UrlSessionConfiguration& /*configuration*/,
                                               std::weak_ptr<UrlSessionDataDelegate> delegate) {
    prepareClient();
    return std::make_unique<LinuxUrlSession>(std::move(delegate));
}

} // namespace orvane::platform
