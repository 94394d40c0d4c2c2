#pragma once

#include <stdexcept>
#include <string>

namespace orvane::tools {

/// Exit statuses, as sysexits.h numbers them.
enum class PublishStatus { usage = 64, badData = 65, noInput = 66, internalError = 70, cannotCreate = 73 };

/// Why nothing was published; the text is one line for the release engineer.
class PublishError : public std::runtime_error {
public:
    PublishError(PublishStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

    PublishStatus status() const { return status_; }

private:
    PublishStatus status_;
};

} // namespace orvane::tools
