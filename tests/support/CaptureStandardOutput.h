#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace orvane::test {

/// Diverts standard output, of C stdio, iostreams and descriptor 1 alike, until `finish` or its destruction.
/// One at a time. What goes past stdio lands in a file, so child processes are captured too.
class CaptureStandardOutput {
public:
    CaptureStandardOutput();
    ~CaptureStandardOutput();
    CaptureStandardOutput(const CaptureStandardOutput&) = delete;
    CaptureStandardOutput& operator=(const CaptureStandardOutput&) = delete;

    /// What was written so far. Any thread.
    std::string text() const;

    /// Gives standard output back and returns what was written.
    std::string finish();

private:
    void giveBack();

    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
    int savedDescriptor_ = -1;
};

} // namespace orvane::test
