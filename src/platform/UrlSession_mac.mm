#include "platform/UrlSession.h"

#include "platform/Foundation_mac.h"
#include "platform/PlainHttp.h"

#include <atomic>
#include <map>
#include <mutex>

namespace orvane::platform {

namespace {

class MacDataTask;

/// The tasks in flight, by the system's own number for each. A task is added when it is resumed or cancelled
/// and removed for good by its completion.
class RunningTasks {
public:
    void add(const std::shared_ptr<MacDataTask>& task);
    std::shared_ptr<MacDataTask> find(NSURLSessionTask* task) const;
    std::shared_ptr<MacDataTask> take(NSURLSessionTask* task);

private:
    mutable std::mutex mutex_;
    std::map<NSUInteger, std::shared_ptr<MacDataTask>> tasks_;
};

class MacDataTask final : public UrlSessionDataTask, public std::enable_shared_from_this<MacDataTask> {
public:
    MacDataTask(NSURLSessionDataTask* task, std::shared_ptr<RunningTasks> runningTasks)
        : task_(task),
          runningTasks_(std::move(runningTasks)),
          refusalToBegin_(refusalOfTransfer(originalRequestUrl().value_or(std::string()))) {}

    std::optional<std::string> originalRequestUrl() const override {
        @autoreleasepool {
            NSString* const url = task_.originalRequest.URL.absoluteString;
            return url == nil ? std::nullopt : std::optional(fromNSString(url));
        }
    }

    void resume() override {
        runningTasks_->add(shared_from_this());
        if (refusalToBegin_) {
            [task_ cancel];
        } else {
            [task_ resume];
        }
    }

    void suspend() override { [task_ suspend]; }

    void cancel() override {
        isCancelled_ = true;
        runningTasks_->add(shared_from_this());
        [task_ cancel];
    }

    NSUInteger identifier() const { return task_.taskIdentifier; }

    /// Whether the task may go there. The session's queue alone, as the next.
    bool follow(NSURLRequest* request) {
        redirectRefusal_ = refusalOfTransfer(fromNSString(request.URL.absoluteString));
        return !redirectRefusal_;
    }

    /// Whether the task only completes from now on: the system may still bring a response or data that it had
    /// before it was told to cancel.
    bool isOver() const { return isCancelled_ || refusal(); }

    /// What stands in place of the system's error where it was we who ended the task.
    const std::optional<Error>& refusal() const {
        return redirectRefusal_ ? redirectRefusal_ : refusalToBegin_;
    }

private:
    NSURLSessionDataTask* const task_;
    const std::shared_ptr<RunningTasks> runningTasks_;
    const std::optional<Error> refusalToBegin_;
    std::optional<Error> redirectRefusal_;
    std::atomic<bool> isCancelled_ = false;

    friend class RunningTasks;
    bool hasCompleted_ = false; ///< guarded by the mutex of the running tasks
};

void RunningTasks::add(const std::shared_ptr<MacDataTask>& task) {
    const std::lock_guard lock(mutex_);
    if (!task->hasCompleted_) {
        tasks_[task->identifier()] = task;
    }
}

std::shared_ptr<MacDataTask> RunningTasks::find(NSURLSessionTask* task) const {
    const std::lock_guard lock(mutex_);
    const auto found = tasks_.find(task.taskIdentifier);
    return found == tasks_.end() ? nullptr : found->second;
}

std::shared_ptr<MacDataTask> RunningTasks::take(NSURLSessionTask* task) {
    const std::lock_guard lock(mutex_);
    const auto node = tasks_.extract(task.taskIdentifier);
    if (node.empty()) {
        return nullptr;
    }
    node.mapped()->hasCompleted_ = true;
    return node.mapped();
}

NSURLRequestCachePolicy toNSCachePolicy(CachePolicy policy) {
    return policy == CachePolicy::reloadIgnoringLocalCacheData ? NSURLRequestReloadIgnoringLocalCacheData
                                                               : NSURLRequestUseProtocolCachePolicy;
}

/// The bytes are moved, not copied: a crash report may be large.
NSData* toNSData(std::string bytes) {
    auto* const owned = new std::string(std::move(bytes));
    return [[NSData alloc] initWithBytesNoCopy:owned->data()
                                        length:owned->size()
                                   deallocator:^(void*, NSUInteger) {
                                     delete owned;
                                   }];
}

NSURLRequest* toNSURLRequest(UrlRequest request) {
    NSMutableURLRequest* const converted = [[NSMutableURLRequest alloc]
            initWithURL:[NSURL URLWithString:toNSString(request.url)]
            cachePolicy:toNSCachePolicy(request.cachePolicy)
        timeoutInterval:static_cast<NSTimeInterval>(request.timeoutInterval.count())];
    converted.HTTPMethod = toNSString(request.httpMethod);
    for (const auto& [field, value] : request.httpHeaderFields) {
        [converted setValue:toNSString(value) forHTTPHeaderField:toNSString(field)];
    }
    if (!request.httpBody.empty()) {
        converted.HTTPBody = toNSData(std::move(request.httpBody));
    }
    return converted;
}

} // namespace

} // namespace orvane::platform

using namespace orvane;

/// Stands between the system's session, which holds it until its last task has ended, and our delegate, which
/// it holds weakly.
@interface OrvaneSessionDelegate : NSObject <NSURLSessionDataDelegate> {
@public
    std::weak_ptr<platform::UrlSessionDataDelegate> delegate;
    std::shared_ptr<platform::RunningTasks> runningTasks;
}
@end

@implementation OrvaneSessionDelegate

- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest*))completionHandler {
    const auto redirected = runningTasks->find(task);
    const bool isFollowed = redirected && redirected->follow(request);
    if (!isFollowed) {
        [task cancel];
    }
    completionHandler(isFollowed ? request : nil);
}

- (void)URLSession:(NSURLSession*)session
              dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveResponse:(NSURLResponse*)response
     completionHandler:(void (^)(NSURLSessionResponseDisposition))completionHandler {
    const auto receiver = delegate.lock();
    const auto task = runningTasks->find(dataTask);
    auto disposition = platform::ResponseDisposition::allow;
    if (task && task->isOver()) {
        disposition = platform::ResponseDisposition::cancel;
    } else if (receiver && task) {
        disposition = receiver->didReceiveResponse(*task, response.expectedContentLength);
    }
    completionHandler(disposition == platform::ResponseDisposition::allow ? NSURLSessionResponseAllow
                                                                          : NSURLSessionResponseCancel);
}

- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data {
    const auto receiver = delegate.lock();
    const auto task = runningTasks->find(dataTask);
    if (!receiver || !task) {
        return;
    }
    // Data that came in several pieces is not copied into one.
    [data enumerateByteRangesUsingBlock:^(const void* bytes, NSRange range, BOOL* stop) {
      if (task->isOver()) {
          *stop = YES;
      } else {
          receiver->didReceiveData(*task, {static_cast<const std::byte*>(bytes), range.length});
      }
    }];
}

- (void)URLSession:(NSURLSession*)session task:(NSURLSessionTask*)task didCompleteWithError:(NSError*)error {
    const auto receiver = delegate.lock();
    const auto completed = runningTasks->take(task);
    if (receiver && completed) {
        const auto systemsError = error == nil ? std::nullopt : std::optional(platform::fromNSError(error));
        const auto refusal = completed->refusal();
        receiver->didComplete(*completed, refusal ? refusal : systemsError);
    }
}

@end

namespace orvane::platform {

namespace {

class MacUrlSession final : public UrlSession {
public:
    MacUrlSession(const UrlSessionConfiguration& configuration,
                  std::weak_ptr<UrlSessionDataDelegate> delegate) {
        NSURLSessionConfiguration* const converted = NSURLSessionConfiguration.defaultSessionConfiguration;
        converted.requestCachePolicy = toNSCachePolicy(configuration.requestCachePolicy);
        if (!configuration.urlCache) {
            converted.URLCache = nil;
        }
        OrvaneSessionDelegate* const adapter = [[OrvaneSessionDelegate alloc] init];
        adapter->delegate = std::move(delegate);
        adapter->runningTasks = runningTasks_;
        // Without a queue given, the session makes a serial one of its own.
        session_ = [NSURLSession sessionWithConfiguration:converted delegate:adapter delegateQueue:nil];
    }

    /// The system's session lets go of its delegate when the last started task has ended.
    ~MacUrlSession() override { [session_ finishTasksAndInvalidate]; }

    MacUrlSession(const MacUrlSession&) = delete;
    MacUrlSession& operator=(const MacUrlSession&) = delete;

    std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request) override {
        @autoreleasepool {
            return std::make_shared<MacDataTask>(
                [session_ dataTaskWithRequest:toNSURLRequest(std::move(request))], runningTasks_);
        }
    }

private:
    const std::shared_ptr<RunningTasks> runningTasks_ = std::make_shared<RunningTasks>();
    NSURLSession* session_ = nil;
};

} // namespace

std::unique_ptr<UrlSession> UrlSession::create(const UrlSessionConfiguration& configuration,
                                               std::weak_ptr<UrlSessionDataDelegate> delegate) {
    @autoreleasepool {
        return std::make_unique<MacUrlSession>(configuration, std::move(delegate));
    }
}

} // namespace orvane::platform
