#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace orvane::platform {

/// Writes lines to a descriptor that may block: a full pipe, a stopped terminal.
///
/// Any thread. The descriptor must stay open for the life of the process: a blocked write may outlive the
/// object.
class LineWriter {
public:
    /// `limit` is the longest time that one line may take.
    LineWriter(int descriptor, std::chrono::milliseconds limit);
    ~LineWriter();
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;

    /// Writes `line` and a line feed. The system has the whole line when the call returns. If that takes
    /// longer than the limit, the descriptor is given up: the rest of this line and all later lines are
    /// dropped, and later calls return at once. A line whose write fails is dropped too. A regular file is
    /// never given up.
    void writeLine(std::string line);

private:
    class Channel;

    const std::shared_ptr<Channel> channel_;
};

/// Writes a line to standard output as `LineWriter::writeLine` does, with the product's limit. Every line
/// that this program prints goes through here; C stdio and iostreams would wait for a reader without end.
void printLine(std::string line);

/// The same for standard error.
void printErrorLine(std::string line);

} // namespace orvane::platform
