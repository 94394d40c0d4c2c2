#pragma once

#include <stdexcept>
#include <string>

namespace orvane::tools {

/// Exit statuses of the tools, as sysexits.h numbers them.
enum class ExitStatus {
    usage = 64,
    badData = 65,
    noInput = 66,
    unavailable = 69,
    internalError = 70,
    cannotCreate = 73
};

/// Why a tool did not do what it was asked; the text is one line for the person who asked.
class ToolError : public std::runtime_error {
public:
    ToolError(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

    ExitStatus status() const { return status_; }

private:
    ExitStatus status_;
};

} // namespace orvane::tools
