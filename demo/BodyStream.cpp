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

BodyStream::BodyStream(std::unique_ptr<std::istream> content, const VendorFault& fault,
                       std::filesystem::path releaseFile, StopSignal& stop)
    : content_(std::move(content)),
      fault_(fault),
      releaseFile_(std::move(releaseFile)),
      stop_(stop),
      size_(sizeOf(*content_)) {}

std::optional<std::string> BodyStream::nextPiece() {
    if (!waitForTurn() || !waitForRelease()) {
        return std::nullopt;
    }
    std::uint64_t limit = std::min(kPieceSize, size_ - position_);
    if (fault_.bytesPerSecond) {
        limit = std::min(limit, std::max<std::uint64_t>(1, *fault_.bytesPerSecond / kPiecesPerSecond));
    }
    if (fault_.stallAfterBytes && position_ < *fault_.stallAfterBytes) {
        limit = std::min(limit, *fault_.stallAfterBytes - position_);
    }
    if (fault_.dropAfterBytes) {
        limit = std::min(limit, *fault_.dropAfterBytes - position_);
        if (limit == 0 && position_ < size_) {
            return std::nullopt;
        }
    }
    std::string piece(limit, '\0');
    content_->read(piece.data(), static_cast<std::streamsize>(limit));
    if (static_cast<std::uint64_t>(content_->gcount()) != limit) {
        return std::nullopt; // the file was cut while it was being sent
    }
    position_ += limit;
    return piece;
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

bool BodyStream::waitForRelease() {
    if (!fault_.stallAfterBytes || position_ < *fault_.stallAfterBytes) {
        return true;
    }
    while (!std::filesystem::exists(releaseFile_)) {
        if (stop_.givenWithin(kReleasePollInterval)) {
            return false;
        }
    }
    return true;
}

} // namespace orvane::demo
