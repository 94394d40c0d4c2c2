#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>

namespace orvane::tools {

/// Divides a stream into the bodies of crash reports: JSON objects, one after another. A stream that begins
/// as a log does is one piece.
///
/// A body that breaks off takes along no more than the rest of its line.
class ReportStream {
public:
    /// Pieces longer than `largest` bytes are divided there.
    ReportStream(std::istream& stream, std::uintmax_t largest);

    /// The next piece; nothing at the stream's end.
    std::optional<std::string> next();

private:
    bool isComplete(char character);
    std::string rest(std::string piece);

    std::istream& stream_;
    std::uintmax_t largest_;
    std::size_t depth_ = 0;
    bool isInText_ = false;
    bool isEscaped_ = false;
};

} // namespace orvane::tools
