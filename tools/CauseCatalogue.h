#pragma once

#include <span>
#include <string_view>

namespace orvane::tools {

/// What the user saw at the end of a run.
enum class Sight {
    noConnection,      ///< text 4
    firewall,          ///< text 5
    installerTooOld,   ///< text 9
    failed,            ///< text 15, or 16 of an uninstallation
    engineMessage,     ///< a text of the engine's own
    windowDisappeared, ///< the program stopped without an alert, and sent no report
    noAlert,           ///< the run went on, or ended without a fatal error
};

/// What the user saw, in the user's languages and in the support engineer's.
struct SightTexts {
    Sight sight;
    std::string_view heading;
    std::string_view french; ///< the alert's first words; empty without an alert of a fixed text
    std::string_view german;
};

std::span<const SightTexts> sights();
const SightTexts& textsOf(Sight sight);

/// One reason for which a run ends, as support needs it.
struct Cause {
    std::string_view id; ///< for programs: never changed once it was released
    Sight sight;
    std::string_view sign;  ///< what tells it in the log, as Markdown; `…` for what changes from run to run
    std::string_view title; ///< what happened
    std::string_view remedy; ///< what to do about it
};

/// All causes, grouped by `Sight`. The one list: the tables of docs/support.md are made of it.
std::span<const Cause> causes();

/// The cause of that id, which must be in the catalogue.
const Cause& causeNamed(std::string_view id);

} // namespace orvane::tools
