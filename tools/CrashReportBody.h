#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace orvane::tools {

/// Why a file holds no crash report that can be used.
enum class Unusable {
    foreign,    ///< something else, such as another program's report
    damaged,    ///< a crash report once, cut off or changed since
    unreadable, ///< the system did not let it be read
};

class UnusableReport : public std::runtime_error {
public:
    UnusableReport(Unusable kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}

    Unusable kind() const { return kind_; }

private:
    Unusable kind_;
};

/// The log that a crash report holds; `body` is what a bootstrapper posted. Throws `UnusableReport`.
std::string logInReport(std::string_view body);

} // namespace orvane::tools
