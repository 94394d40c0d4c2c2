#pragma once

#include "model/TextIdentifiers.h"

#include <cstdint>
#include <string>

namespace orvane {

/// What a run shows its user, and the texts it says it with. From any thread: each operation that shows hands
/// its work to the main queue and returns at once, but for the crash report that `showFatalErrorAndQuit` then
/// sends from the calling thread.
class Presentation {
public:
    virtual void showStep(const std::string& step) = 0;
    virtual void showError(const std::string& err) = 0;
    virtual void setProgression(std::int64_t pos) = 0;

    /// The process ends with status 1 once the user has read `err`.
    virtual void showFatalErrorAndQuit(const std::string& err) = 0;

    /// The text of that identifier in the language of the run.
    virtual std::string loadTranslatedString(std::int64_t stringID) const = 0;

    /// The identifier's form for the run's mode, for a text that has one for each.
    virtual std::int64_t forMode(std::int64_t stringID) const = 0;

    /// A fatal error that tells the user only that the run failed; the log says why.
    void showFailureAndQuit() { showFatalErrorAndQuit(loadTranslatedString(forMode(text::kFailed))); }

protected:
    Presentation() = default;
    ~Presentation() = default;
    Presentation(const Presentation&) = default;
    Presentation& operator=(const Presentation&) = default;
};

} // namespace orvane
