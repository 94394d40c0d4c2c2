#include "platform/StandardOutput.h"

#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

/// Far longer than a working reader needs on a busy machine, and short enough for a user who waits for the
/// window.
constexpr std::chrono::milliseconds kLineLimit{2000};

/// A regular file has no reader to wait for.
bool isRegularFile(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Blocks until the descriptor has taken everything, or fails.
void writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // The process that started this one has made the descriptor non-blocking.
            pollfd writable{.fd = descriptor, .events = POLLOUT, .revents = 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace

/// Lines on their way from the callers to a thread that may block in write(2). No flag could stand in for
/// that thread: O_NONBLOCK would also apply to every other process that shares the open file, and poll(2)
/// promises no room for a whole line.
class LineWriter::Channel : public std::enable_shared_from_this<Channel> {
public:
    Channel(int descriptor, std::chrono::milliseconds limit) : descriptor_(descriptor), limit_(limit) {}

    void writeLine(std::string line);

    /// Ends the thread once it has nothing to write.
    void close();

private:
    bool startThread();
    void writeLines();

    const int descriptor_;
    const std::chrono::milliseconds limit_;
    std::mutex mutex_;
    std::condition_variable lineAdded_;
    std::condition_variable lineDone_;
    std::deque<std::string> lines_;
    std::uint64_t added_ = 0; ///< lines so far
    std::uint64_t done_ = 0;  ///< of these, lines written or failed
    bool threadRuns_ = false;
    bool closed_ = false; ///< given up, or the writer is gone
};

void LineWriter::Channel::writeLine(std::string line) {
    line += '\n';
    if (isRegularFile(descriptor_)) {
        writeAll(descriptor_, line);
        return;
    }
    std::unique_lock lock(mutex_);
    if (closed_) {
        return;
    }
    if (!startThread()) {
        lock.unlock();
        writeAll(descriptor_, line);
        return;
    }
    lines_.push_back(std::move(line));
    const std::uint64_t ticket = ++added_;
    lineAdded_.notify_one();
    if (!lineDone_.wait_for(lock, limit_, [this, ticket] { return closed_ || done_ >= ticket; })) {
        closed_ = true;
        lines_.clear();
        lineAdded_.notify_one();
        lineDone_.notify_all();
    }
}

void LineWriter::Channel::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    lineAdded_.notify_one();
}

/// The mutex is held by the caller. False if the machine has no thread left.
bool LineWriter::Channel::startThread() {
    try {
        if (!threadRuns_) {
            std::thread([self = shared_from_this()] { self->writeLines(); }).detach();
            threadRuns_ = true;
        }
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

/// The body of the thread.
void LineWriter::Channel::writeLines() {
    std::unique_lock lock(mutex_);
    while (true) {
        lineAdded_.wait(lock, [this] { return closed_ || !lines_.empty(); });
        if (lines_.empty()) {
            return;
        }
        const std::string line = std::move(lines_.front());
        lines_.pop_front();
        lock.unlock();
        writeAll(descriptor_, line);
        lock.lock();
        ++done_;
        lineDone_.notify_all();
    }
}

LineWriter::LineWriter(int descriptor, std::chrono::milliseconds limit)
    : channel_(std::make_shared<Channel>(descriptor, limit)) {}

LineWriter::~LineWriter() { channel_->close(); }

void LineWriter::writeLine(std::string line) { channel_->writeLine(std::move(line)); }

// Never destroyed: a thread may still print while the process ends.

void printLine(std::string line) {
    static auto* const standardOutput = new LineWriter(STDOUT_FILENO, kLineLimit);
    standardOutput->writeLine(std::move(line));
}

void printErrorLine(std::string line) {
    static auto* const standardError = new LineWriter(STDERR_FILENO, kLineLimit);
    standardError->writeLine(std::move(line));
}

} // namespace orvane::platform
