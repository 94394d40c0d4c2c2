#pragma once

#include "demo/StopSignal.h"
#include "demo/VendorFaults.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <string>

namespace orvane::demo {

/// Waits for the file that ends stalls; false when `stop` came first.
bool waitForRelease(const std::filesystem::path& releaseFile, StopSignal& stop);

/// A response's body as it is handed out piece by piece, at the pace and with the accidents that a fault asks
/// for. A file is read as it is sent, never held whole. One thread.
class BodyStream {
public:
    /// `releaseFile` ends a stall; `stop` ends every wait.
    BodyStream(std::unique_ptr<std::istream> content, const VendorFault& fault,
               std::filesystem::path releaseFile, StopSignal& stop);

    /// Length in bytes, the fault's blanks included.
    std::uint64_t size() const { return size_; }

    /// The next piece, waited for as long as the pace demands: empty at the end of the content, none when the
    /// connection is to be cut.
    std::optional<std::string> nextPiece();

private:
    bool waitForTurn();
    bool waitWhileStalled();
    std::uint64_t nextLength() const;
    bool read(std::string& piece);

    std::unique_ptr<std::istream> content_;
    VendorFault fault_;
    std::filesystem::path releaseFile_;
    StopSignal& stop_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace orvane::demo
