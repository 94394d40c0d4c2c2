#pragma once

#include <functional>
#include <string_view>

namespace orvane {

// What ends the process on the spot: nothing below returns. The reason is written to the run's log, where it
// is the last line, and to standard error; then the process aborts. Any thread, but not a signal handler.

/// A precondition of this program's own was broken: a bug.
[[noreturn]] void programmingError(std::string_view what);

/// What another party supplied makes it impossible to go on: the server, the engine, the system's settings.
[[noreturn]] void invalidInput(std::string_view what);

/// The same, but the reason goes to standard error alone: for input that must leave no line in the log.
[[noreturn]] void invalidInputNotLogged(std::string_view what);

/// The system refused what cannot be done without, although nothing is wrong with this program or its input.
[[noreturn]] void unexpectedError(std::string_view what);

/// Registers, for its own lifetime, what writes the reason of an abort to the log. The latest registered one
/// is used.
class AbortRecorder {
public:
    /// `record` is called at most once, on the aborting thread. It must return in bounded time.
    explicit AbortRecorder(std::function<void(std::string_view reason)> record);
    ~AbortRecorder();
    AbortRecorder(const AbortRecorder&) = delete;
    AbortRecorder& operator=(const AbortRecorder&) = delete;

    const std::function<void(std::string_view reason)> record;
};

} // namespace orvane
