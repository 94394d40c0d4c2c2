#include "platform/Process.h"

#include "platform/Error.h"
#include "platform/Foundation_mac.h"
#include "platform/IgnoredSignal.h"

#include <cerrno>
#include <csignal>
#include <dispatch/dispatch.h>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

/// Signals that a child would inherit, kept from it while this object exists: NSTask promises nothing about
/// them. The threads of dispatch queues block most signals, and a shell ignores SIGINT and SIGQUIT for what
/// it starts in the background; an engine that was launched so could not be interrupted.
class SignalsForChild {
public:
    SignalsForChild() {
        for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGCHLD}) {
            struct sigaction current {};
            ::sigaction(number, nullptr, &current);
            if (current.sa_handler == SIG_IGN) {
                ignoreSignal(number);
            }
        }
        sigset_t none;
        sigemptyset(&none);
        ::pthread_sigmask(SIG_SETMASK, &none, &blocked_);
    }
    ~SignalsForChild() { ::pthread_sigmask(SIG_SETMASK, &blocked_, nullptr); }
    SignalsForChild(const SignalsForChild&) = delete;
    SignalsForChild& operator=(const SignalsForChild&) = delete;

private:
    sigset_t blocked_{};
};

/// NSTask answers some failures with an error and raises others.
std::optional<Error> launchError(NSTask* task) {
    const SignalsForChild signals;
    @try {
        NSError* error = nil;
        return [task launchAndReturnError:&error] ? std::nullopt : std::optional(fromNSError(error));
    } @catch (NSException* exception) {
        return fromNSException(exception);
    }
}

} // namespace

/// NSTask guards itself against a number that another process was given meanwhile, but not against several
/// threads.
class Process::Child {
public:
    std::mutex mutex; ///< guards the task from its launch on
    bool isLaunched = false;
    NSTask* const task = [[NSTask alloc] init];
    NSPipe* pipe = nil;
    dispatch_group_t running = dispatch_group_create();
};

Process::Process() : child_(std::make_shared<Child>()) {}

Process::~Process() = default;

void Process::setLaunchPath(std::string launchPath) { launchPath_ = std::move(launchPath); }

void Process::setArguments(std::vector<std::string> arguments) { arguments_ = std::move(arguments); }

const std::vector<std::string>& Process::arguments() const { return arguments_; }

void Process::pipeStandardOutput() {
    @autoreleasepool {
        child_->pipe = [NSPipe pipe];
        child_->task.standardOutput = child_->pipe;
    }
}

void Process::launch() {
    @autoreleasepool {
        if (launchPath_.empty()) {
            throw posixError(ENOENT, "No launch path");
        }
        const std::lock_guard lock(child_->mutex);
        NSTask* const task = child_->task;
        task.executableURL = [NSURL fileURLWithPath:toNSString(launchPath_)];
        task.arguments = toNSArray(arguments_);

        // Told of the end by the handler, since NSTask's own wait would run the calling thread's run loop.
        dispatch_group_t const running = child_->running;
        dispatch_group_enter(running);
        task.terminationHandler = ^(NSTask*) {
          dispatch_group_leave(running);
        };
        if (const std::optional<Error> error = launchError(task)) {
            task.terminationHandler = nil;
            dispatch_group_leave(running);
            throw Error(*error);
        }
        child_->isLaunched = true;
    }
}

std::size_t Process::readStandardOutput(std::span<std::byte> buffer) {
    const int descriptor = child_->pipe.fileHandleForReading.fileDescriptor;
    for (;;) {
        const ssize_t received = ::read(descriptor, buffer.data(), buffer.size());
        if (received >= 0) {
            return static_cast<std::size_t>(received);
        }
        if (errno != EINTR) {
            throw posixError(errno, "standard output of a child");
        }
    }
}

/// NSTask raises an exception when it is interrupted before its launch.
void Process::interrupt() {
    @autoreleasepool {
        const std::lock_guard lock(child_->mutex);
        if (child_->isLaunched && child_->task.isRunning) {
            [child_->task interrupt];
        }
    }
}

int Process::waitUntilExit() {
    dispatch_group_wait(child_->running, DISPATCH_TIME_FOREVER);
    @autoreleasepool {
        const std::lock_guard lock(child_->mutex);
        return child_->task.terminationStatus;
    }
}

} // namespace orvane::platform
