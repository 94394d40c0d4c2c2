#include "platform/Process.h"

#include "platform/Error.h"
#include "platform/Foundation_mac.h"

#include <cerrno>
#include <dispatch/dispatch.h>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

/// NSTask guards itself against a number that another process was given meanwhile.
class Process::Child {
  public:
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
    child_->pipe = [NSPipe pipe];
    child_->task.standardOutput = child_->pipe;
}

void Process::launch() {
    @autoreleasepool {
        if (launchPath_.empty()) {
            throw posixError(ENOENT, "No launch path");
        }
        NSTask* const task = child_->task;
        task.executableURL = [NSURL fileURLWithPath:toNSString(launchPath_)];
        task.arguments = toNSArray(arguments_);

        // Told of the end by the handler, since NSTask's own wait would run the calling thread's run loop.
        dispatch_group_t const running = child_->running;
        dispatch_group_enter(running);
        task.terminationHandler = ^(NSTask*) {
          dispatch_group_leave(running);
        };
        NSError* error = nil;
        if (![task launchAndReturnError:&error]) {
            task.terminationHandler = nil;
            dispatch_group_leave(running);
            throw fromNSError(error);
        }
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

void Process::interrupt() {
    if (child_->task.isRunning) {
        [child_->task interrupt];
    }
}

int Process::waitUntilExit() {
    dispatch_group_wait(child_->running, DISPATCH_TIME_FOREVER);
    return child_->task.terminationStatus;
}

} // namespace orvane::platform
