#pragma once

#include "platform/UrlSession.h"
#include "tests/support/Gate.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orvane::test {

/// What a task has brought so far.
struct Record {
    std::vector<std::string> calls; ///< "response", "data", "completion", in their order
    std::optional<std::int64_t> expectedContentLength;
    std::string body;
    std::optional<platform::Error> error;
    std::vector<std::thread::id> threads; ///< of each call
    bool callsOverlapped = false;
};

/// Keeps what the tasks of a session bring, all in one record. Any thread may look at it.
class RecordingDelegate final : public platform::UrlSessionDataDelegate {
public:
    using Hook = std::function<void(platform::UrlSessionDataTask&)>;

    /// Called from within the delegate's calls, after they were recorded. To be set before a task starts.
    Hook whenResponseArrives;
    Hook whenDataArrives;
    Hook whenCompleted;
    platform::ResponseDisposition disposition = platform::ResponseDisposition::allow;

    platform::ResponseDisposition didReceiveResponse(platform::UrlSessionDataTask& dataTask,
                                                     std::int64_t expectedContentLength) override;
    void didReceiveData(platform::UrlSessionDataTask& dataTask, ByteView data) override;
    void didComplete(platform::UrlSessionDataTask& task,
                     const std::optional<platform::Error>& error) override;

    Record record() const;

    /// Each answers whether it came in time.
    bool waitForCompletions(std::size_t count = 1) const;
    bool waitForBodyBytes(std::size_t count) const;

private:
    class Call;

    bool waitUntil(const std::function<bool()>& condition) const;

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Record record_;
    std::size_t completions_ = 0;
    std::atomic<int> callsUnderWay_ = 0;
};

} // namespace orvane::test
