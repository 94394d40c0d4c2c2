#pragma once

#include "platform/Bytes.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace orvane::platform {

/// A child process, set up first and then launched once.
///
/// The child inherits environment, working directory and the standard streams, but no other descriptor; it
/// starts with default signal dispositions and an empty signal mask. An ended child is reaped without anyone
/// waiting for it. Destroying a `Process` does nothing to the child. Setting up and launching belong to one
/// thread; `interrupt` may come from any thread at any time.
class Process {
public:
    Process();
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void setLaunchPath(std::string launchPath);
    void setArguments(std::vector<std::string> arguments); ///< without the program's own name
    const std::vector<std::string>& arguments() const;

    /// Connects the child's standard output to a pipe. Before `launch`.
    void pipeStandardOutput();

    /// Throws `Error` when the child could not be started: no launch path, missing or not executable file, no
    /// program of this machine.
    void launch();

    /// Reads what the child writes to its piped standard output until every writer has closed it. Returns the
    /// first `most` bytes; what follows is read and dropped, so that memory is bounded and the child is never
    /// held up. Throws `Error` when reading fails.
    Bytes readStandardOutputToEnd(std::size_t most = std::numeric_limits<std::size_t>::max());

    /// Sends SIGINT. Does nothing before the launch or after the child has ended; never reaches another
    /// process that was given the same number.
    void interrupt();

    /// Blocks until the launched child has ended. Returns its exit status, or the number of the signal that
    /// ended it.
    int waitUntilExit();

private:
    class Child;

    /// Waits for output and reads at most as much as `buffer` holds. 0: every writer has closed the pipe.
    std::size_t readStandardOutput(std::span<std::byte> buffer);

    std::string launchPath_;
    std::vector<std::string> arguments_;
    std::shared_ptr<Child> child_;
};

} // namespace orvane::platform
