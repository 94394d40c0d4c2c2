#include "platform/Process.h"

#include "platform/Descriptor_posix.h"
#include "platform/Error.h"
#include "platform/ProgrammingError.h"

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

void demand(int failure, const std::string& subject) {
    if (failure != 0) {
        throw posixError(failure, subject);
    }
}

/// The signals, mask and descriptors a child starts with.
class SpawnSettings {
public:
    SpawnSettings() {
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawn_file_actions_init(&fileActions_);
        sigset_t signals;
        sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&fileActions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    void setStandardOutput(const Descriptor& descriptor) {
        demand(::posix_spawn_file_actions_adddup2(&fileActions_, descriptor.number(), STDOUT_FILENO),
               "standard output of a child");
    }

    /// Ours are close-on-exec, but a library's or our own parent's might not be.
    void closeAllButStandardStreams() {
        demand(::posix_spawn_file_actions_addclosefrom_np(&fileActions_, STDERR_FILENO + 1),
               "descriptors of a child");
    }

    const posix_spawnattr_t* attributes() const { return &attributes_; }
    const posix_spawn_file_actions_t* fileActions() const { return &fileActions_; }

private:
    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t fileActions_{};
};

/// Whoever started us may have left SIGCHLD ignored. The kernel would then reap our children itself, and a
/// child's number could be given away while we still use it.
void keepEndedChildren() {
    struct sigaction current {};
    ::sigaction(SIGCHLD, nullptr, &current);
    if (current.sa_handler == SIG_IGN || (current.sa_flags & SA_NOCLDWAIT) != 0) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

std::vector<char*> argumentVector(std::string& launchPath, std::vector<std::string>& arguments) {
    std::vector<char*> vector{launchPath.data()};
    for (std::string& argument : arguments) {
        vector.push_back(argument.data());
    }
    vector.push_back(nullptr);
    return vector;
}

} // namespace

/// The child itself. Shared with the thread that reaps it, so it outlives a `Process` that is destroyed
/// earlier.
///
/// The child stays a zombie, its number its own, until `reap` holds the lock; `interrupt` signals it under
/// the same lock and therefore never a stranger.
class Process::Child : public std::enable_shared_from_this<Child> {
public:
    void pipeStandardOutput() { piped_ = true; }
    void launch(std::string launchPath, std::vector<std::string> arguments);
    std::size_t readStandardOutput(std::span<std::byte> buffer) const;
    void interrupt();
    int waitUntilExit();

private:
    enum class Stage { prepared, launchFailed, running, ended };

    void spawn(const std::string& launchPath, char* const* arguments);
    void reap();

    bool piped_ = false;
    Descriptor standardOutput_;

    std::mutex mutex_;
    std::condition_variable stageChanged_;
    Stage stage_ = Stage::prepared;
    pid_t identifier_ = 0;
    int result_ = 0;
};

void Process::Child::launch(std::string launchPath, std::vector<std::string> arguments) {
    std::unique_lock lock(mutex_);
    if (stage_ != Stage::prepared) {
        programmingError("a process was launched twice");
    }
    try {
        // First, so that no child can come into being that nobody would reap.
        std::thread([self = shared_from_this()] { self->reap(); }).detach();
    } catch (const std::system_error& failure) {
        throw posixError(failure.code().value(), launchPath);
    }
    try {
        spawn(launchPath, argumentVector(launchPath, arguments).data());
        stage_ = Stage::running;
    } catch (...) {
        stage_ = Stage::launchFailed;
        stageChanged_.notify_all();
        throw;
    }
    stageChanged_.notify_all();
}

void Process::Child::spawn(const std::string& launchPath, char* const* arguments) {
    SpawnSettings settings;
    Descriptor writeEnd;
    if (piped_) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw posixError(errno, launchPath);
        }
        standardOutput_ = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
        settings.setStandardOutput(writeEnd);
    }
    settings.closeAllButStandardStreams();
    keepEndedChildren();
    demand(::posix_spawn(&identifier_, launchPath.c_str(), settings.fileActions(), settings.attributes(),
                         arguments, ::environ),
           launchPath.empty() ? "No launch path" : launchPath);
}

/// The body of the child's own thread.
void Process::Child::reap() {
    std::unique_lock lock(mutex_);
    stageChanged_.wait(lock, [this] { return stage_ != Stage::prepared; });
    if (stage_ == Stage::launchFailed) {
        return;
    }
    lock.unlock();
    const auto identifier = static_cast<id_t>(identifier_);
    siginfo_t end{};
    while (::waitid(P_PID, identifier, &end, WEXITED | WNOWAIT) != 0) {
        if (errno != EINTR) {
            programmingError("a child was reaped by someone else");
        }
    }
    lock.lock();
    ::waitid(P_PID, identifier, &end, WEXITED | WNOHANG);
    result_ = end.si_status;
    stage_ = Stage::ended;
    stageChanged_.notify_all();
}

std::size_t Process::Child::readStandardOutput(std::span<std::byte> buffer) const {
    if (!standardOutput_.isOpen()) {
        programmingError("the output of a process that has no pipe was to be read");
    }
    for (;;) {
        const ssize_t received = ::read(standardOutput_.number(), buffer.data(), buffer.size());
        if (received >= 0) {
            return static_cast<std::size_t>(received);
        }
        if (errno != EINTR) {
            throw posixError(errno, "standard output of a child");
        }
    }
}

void Process::Child::interrupt() {
    const std::lock_guard lock(mutex_);
    if (stage_ == Stage::running) {
        ::kill(identifier_, SIGINT);
    }
}

int Process::Child::waitUntilExit() {
    std::unique_lock lock(mutex_);
    if (stage_ != Stage::running && stage_ != Stage::ended) {
        programmingError("the end of a process that was not launched was awaited");
    }
    stageChanged_.wait(lock, [this] { return stage_ == Stage::ended; });
    return result_;
}

Process::Process() : child_(std::make_shared<Child>()) {}

Process::~Process() = default;

void Process::setLaunchPath(std::string launchPath) { launchPath_ = std::move(launchPath); }

void Process::setArguments(std::vector<std::string> arguments) { arguments_ = std::move(arguments); }

const std::vector<std::string>& Process::arguments() const { return arguments_; }

void Process::pipeStandardOutput() { child_->pipeStandardOutput(); }

void Process::launch() { child_->launch(launchPath_, arguments_); }

std::size_t Process::readStandardOutput(std::span<std::byte> buffer) {
    return child_->readStandardOutput(buffer);
}

void Process::interrupt() { child_->interrupt(); }

int Process::waitUntilExit() { return child_->waitUntilExit(); }

} // namespace orvane::platform
