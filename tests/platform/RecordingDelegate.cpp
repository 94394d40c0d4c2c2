#include "tests/platform/RecordingDelegate.h"

namespace orvane::test {

using platform::Error;
using platform::ResponseDisposition;
using platform::UrlSessionDataTask;

/// One call of the session, from its beginning to its end.
class RecordingDelegate::Call {
public:
    Call(RecordingDelegate& delegate, const std::string& name) : delegate_(delegate) {
        const bool isAlone = delegate_.callsUnderWay_++ == 0;
        const std::lock_guard lock(delegate_.mutex_);
        delegate_.record_.callsOverlapped |= !isAlone;
        delegate_.record_.calls.push_back(name);
        delegate_.record_.threads.push_back(std::this_thread::get_id());
    }
    ~Call() { --delegate_.callsUnderWay_; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    void keep(const std::function<void(Record&)>& change) const {
        const std::lock_guard lock(delegate_.mutex_);
        change(delegate_.record_);
        delegate_.changed_.notify_all();
    }

private:
    RecordingDelegate& delegate_;
};

ResponseDisposition RecordingDelegate::didReceiveResponse(UrlSessionDataTask& dataTask,
                                                          std::int64_t expectedContentLength) {
    const Call call(*this, "response");
    call.keep([&](Record& record) { record.expectedContentLength = expectedContentLength; });
    if (whenResponseArrives) {
        whenResponseArrives(dataTask);
    }
    return disposition;
}

void RecordingDelegate::didReceiveData(UrlSessionDataTask& dataTask, ByteView data) {
    const Call call(*this, "data");
    call.keep([&](Record& record) { record.body += textOf(data); });
    if (whenDataArrives) {
        whenDataArrives(dataTask);
    }
}

void RecordingDelegate::didComplete(UrlSessionDataTask& task, const std::optional<Error>& error) {
    const Call call(*this, "completion");
    if (whenCompleted) {
        whenCompleted(task);
    }
    call.keep([&](Record& record) {
        record.error = error;
        ++completions_;
    });
}

Record RecordingDelegate::record() const {
    const std::lock_guard lock(mutex_);
    return record_;
}

bool RecordingDelegate::waitForCompletions(std::size_t count) const {
    return waitUntil([&] { return completions_ >= count; });
}

bool RecordingDelegate::waitForBodyBytes(std::size_t count) const {
    return waitUntil([&] { return record_.body.size() >= count; });
}

bool RecordingDelegate::waitUntil(const std::function<bool()>& condition) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, condition);
}

} // namespace orvane::test
