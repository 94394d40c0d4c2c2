#include "platform/ProgrammingError.h"

#include "platform/StandardOutput.h"

#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>

namespace orvane {

namespace {

/// An aborting thread never unlocks it, so the recorder stays alive, and a second thread that aborts waits
/// here for the end of the process. Never destroyed, since a thread may abort while the process exits.
std::mutex& abortMutex() {
    static auto* const mutex = new std::mutex;
    return *mutex;
}

const AbortRecorder* currentRecorder = nullptr; ///< guarded by `abortMutex`

enum class Log { written, omitted };

[[noreturn]] void abortProcess(const std::string& reason, Log log) noexcept {
    thread_local bool isAborting = false;
    if (!std::exchange(isAborting, true)) {
        abortMutex().lock();
        if (log == Log::written && currentRecorder != nullptr) {
            currentRecorder->record(reason);
        }
    }
    platform::printErrorLine("OrvaneBootstrap: " + reason);
    std::abort();
}

} // namespace

void programmingError(std::string_view what) {
    abortProcess("programming error: " + std::string(what), Log::written);
}

void invalidInput(std::string_view what) {
    abortProcess("invalid input: " + std::string(what), Log::written);
}

void invalidInputNotLogged(std::string_view what) {
    abortProcess("invalid input: " + std::string(what), Log::omitted);
}

void unexpectedError(std::string_view what) {
    abortProcess("unexpected error: " + std::string(what), Log::written);
}

AbortRecorder::AbortRecorder(std::function<void(std::string_view reason)> recordReason)
    : record(std::move(recordReason)) {
    const std::lock_guard lock(abortMutex());
    currentRecorder = this;
}

AbortRecorder::~AbortRecorder() {
    const std::lock_guard lock(abortMutex());
    if (currentRecorder == this) {
        currentRecorder = nullptr;
    }
}

} // namespace orvane
