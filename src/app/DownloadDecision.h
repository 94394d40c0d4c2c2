#pragma once

#include <cstdint>

namespace orvane {

/// What `ViewController::initializeDownloads` decided about the engine of this run.
enum class DownloadDecision : std::int64_t {
    download = 1,      ///< a usable engine must be downloaded
    useExisting = 2,   ///< the engine on the machine is usable
    giveUp = 3,        ///< nothing usable and nothing may be downloaded
    noDescription = 4, ///< the vendor did not say which engine is the current one
};

} // namespace orvane
