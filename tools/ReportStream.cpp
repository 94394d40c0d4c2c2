#include "tools/ReportStream.h"

#include "tools/RunLog.h"

namespace orvane::tools {
namespace {

constexpr std::size_t kTimeLength = 10; // "HH:mm:ss: ", by which a log is known

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

} // namespace

ReportStream::ReportStream(std::istream& stream, std::uintmax_t largest)
    : stream_(stream), largest_(largest) {}

std::optional<std::string> ReportStream::next() {
    std::streambuf& source = *stream_.rdbuf();
    std::string piece;
    depth_ = 0;
    isInText_ = false;
    isEscaped_ = false;
    for (int next = source.sbumpc(); next != std::char_traits<char>::eof(); next = source.sbumpc()) {
        const char character = std::char_traits<char>::to_char_type(next);
        if (piece.empty() && isBlank(character)) {
            continue;
        }
        piece += character;
        if (piece.size() == kTimeLength && looksLikeLog(piece)) {
            return rest(std::move(piece));
        }
        if (isComplete(character) || piece.size() == largest_) {
            return piece;
        }
    }
    return piece.empty() ? std::nullopt : std::optional(std::move(piece));
}

/// An object ends with its outermost brace. JSON has no line break inside a text, and nothing that is no
/// object reaches beyond its line.
bool ReportStream::isComplete(char character) {
    if (character == '\n' && (isInText_ || depth_ == 0)) {
        return true;
    }
    if (isInText_) {
        isInText_ = character != '"' || isEscaped_;
        isEscaped_ = character == '\\' && !isEscaped_;
        return false;
    }
    isInText_ = character == '"' && depth_ > 0;
    if (character == '{') {
        ++depth_;
    } else if (character == '}' && depth_ > 0) {
        return --depth_ == 0;
    }
    return false;
}

std::string ReportStream::rest(std::string piece) {
    std::streambuf& source = *stream_.rdbuf();
    for (int next = source.sbumpc(); next != std::char_traits<char>::eof() && piece.size() < largest_;
         next = source.sbumpc()) {
        piece += std::char_traits<char>::to_char_type(next);
    }
    return piece;
}

} // namespace orvane::tools
