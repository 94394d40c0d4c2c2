#pragma once

#include "model/DescribedEngine.h"

#include <filesystem>
#include <memory>
#include <string>

namespace orvane {

class Logger;
class Presentation;

/// Whether the engine on the machine is the one that the vendor describes, as far as versions and digests
/// tell.
///
/// Every operation blocks while it reads the file or asks the engine, and logs what it found if there is a
/// logger. They may come from any thread.
class EngineChecks {
public:
    /// `presentation` must outlive the checks.
    EngineChecks(DescribedEngine engine, std::shared_ptr<Logger> logger, Presentation& presentation);

    /// Of this program and of the described engine.
    bool orvaneMajorVersionMatches() const;

    /// Whether the engine on the machine is as new as the described one. One that cannot be asked is not.
    bool orvaneVersionsMatch() const;

    /// Whether the downloaded file, or the engine itself if its download is plain, has the described digest.
    /// A file that is there but cannot be read ends in a fatal error.
    bool orvaneChecksumsMatch() const;

    /// What the engine on the machine answers to "--version", without the line feeds around it; makes it
    /// runnable first if need be. Throws `platform::Error`.
    std::string getCurrentOrvaneVersion() const;

private:
    const DescribedEngine engine_;
    const std::shared_ptr<Logger> logger_;
    Presentation& presentation_;
};

} // namespace orvane
