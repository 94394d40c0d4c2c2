#pragma once

#include "platform/Bytes.h"

#include <memory>
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

    /// Reads what the child writes to its piped standard output until every writer has closed it. Throws
    /// `Error` when reading fails.
    Bytes readStandardOutputToEnd();

    /// Sends SIGINT. Does nothing before the launch or after the child has ended; never reaches another
    /// process that was given the same number.
    void interrupt();

    /// Blocks until the launched child has ended. Returns its exit status, or the number of the signal that
    /// ended it.
    int waitUntilExit();

private:
    class Child;

    std::string launchPath_;
    std::vector<std::string> arguments_;
    std::shared_ptr<Child> child_;
};

} // namespace orvane::platform
