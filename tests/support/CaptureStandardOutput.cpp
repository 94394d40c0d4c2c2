#include "tests/support/CaptureStandardOutput.h"

#include "platform/ProgrammingError.h"

#include <array>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace orvane::test {

namespace {

void flushAll() {
    std::cout.flush();
    std::fflush(stdout);
}

} // namespace

CaptureStandardOutput::CaptureStandardOutput() : file_(std::tmpfile(), &std::fclose) {
    flushAll();
    savedDescriptor_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    if (file_ == nullptr || savedDescriptor_ < 0 || dup2(fileno(file_.get()), STDOUT_FILENO) < 0) {
        programmingError("standard output cannot be captured");
    }
}

CaptureStandardOutput::~CaptureStandardOutput() { giveBack(); }

std::string CaptureStandardOutput::text() const {
    flushAll();
    std::string text;
    std::array<char, 4096> piece{};
    ssize_t length = 0;
    const auto position = [&text] { return static_cast<off_t>(text.size()); };
    while ((length = pread(fileno(file_.get()), piece.data(), piece.size(), position())) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(length));
    }
    return text;
}

std::string CaptureStandardOutput::finish() {
    giveBack();
    return text();
}

void CaptureStandardOutput::giveBack() {
    if (savedDescriptor_ < 0) {
        return;
    }
    flushAll();
    dup2(savedDescriptor_, STDOUT_FILENO);
    close(savedDescriptor_);
    savedDescriptor_ = -1;
}

} // namespace orvane::test
