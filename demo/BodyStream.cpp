#include "demo/BodyStream.h"

#include <algorithm>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t kPieceSize = 65'536;
constexpr std::uint64_t kPiecesPerSecond = 20; // of a paced body, so that a progress bar moves smoothly
constexpr auto kReleasePollInterval = 20ms;

std::uint64_t sizeOf(std::istream& content) {
    content.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(content.tellg());
    content.seekg(0);
    return size;
}

} // namespace

bool waitForRelease(const std::filesystem::path& releaseFile, StopSignal& stop) {
    while (!std::filesystem::exists(releaseFile)) {
        if (stop.givenWithin(kReleasePollInterval)) {
            return false;
        }
    }
    return true;
}

BodyStream::BodyStream(std::unique_ptr<std::istream> content, const VendorFault& fault,
                       std::filesystem::path releaseFile, StopSignal& stop)
    : content_(std::move(content)),
      fault_(fault),
      releaseFile_(std::move(releaseFile)),
      stop_(stop),
      size_(fault.blanks + sizeOf(*content_)) {}

std::optional<std::string> BodyStream::nextPiece() {
    if (!waitForTurn() || !waitWhileStalled()) {
        return std::nullopt;
    }
    const bool isDropped = fault_.dropAfterBytes && position_ >= *fault_.dropAfterBytes;
    if (isDropped && position_ < size_) {
        return std::nullopt;
    }
    std::string piece(nextLength(), ' ');
    if (position_ >= fault_.blanks && !read(piece)) {
        return std::nullopt; // the file was cut while it was being sent
    }
    position_ += piece.size();
    return piece;
}

/// Up to the next place at which something else begins.
std::uint64_t BodyStream::nextLength() const {
    std::uint64_t length = std::min(kPieceSize, size_ - position_);
    if (fault_.bytesPerSecond) {
        length = std::min(length, std::max<std::uint64_t>(1, *fault_.bytesPerSecond / kPiecesPerSecond));
    }
    for (const std::optional<std::uint64_t> place :
         {std::optional(fault_.blanks), fault_.stallAfterBytes, fault_.dropAfterBytes}) {
        if (place && position_ < *place) {
            length = std::min(length, *place - position_);
        }
    }
    return length;
}

bool BodyStream::read(std::string& piece) {
    content_->read(piece.data(), static_cast<std::streamsize>(piece.size()));
    return static_cast<std::uint64_t>(content_->gcount()) == piece.size();
}

bool BodyStream::waitForTurn() {
    if (!fault_.bytesPerSecond) {
        return true;
    }
    const std::chrono::duration<double> due(static_cast<double>(position_) /
                                            static_cast<double>(*fault_.bytesPerSecond));
    const auto turn = start_ + std::chrono::duration_cast<std::chrono::steady_clock::duration>(due);
    return !stop_.givenWithin(turn - std::chrono::steady_clock::now());
}

bool BodyStream::waitWhileStalled() {
    const bool isStalled = fault_.stallAfterBytes && position_ >= *fault_.stallAfterBytes;
    return !isStalled || waitForRelease(releaseFile_, stop_);
}

} // namespace orvane::demo
