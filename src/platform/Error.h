#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace orvane::platform {

/// A failure that the operating system, or a library standing for it, reported.
///
/// Thrown by the facilities of this folder and caught at once by whoever called them, who turns it into a
/// log line. A value: copies are independent and may cross threads.
class Error : public std::exception {
public:
    /// `localizedDescription` is one sentence for a log; it names the file or host concerned where there is
    /// one.
    Error(std::string domain, std::int64_t code, std::string localizedDescription);

    /// For a platform that renders its errors itself.
    Error(std::string domain, std::int64_t code, std::string localizedDescription,
          std::string debugDescription);

    const std::string& domain() const { return domain_; }
    std::int64_t code() const { return code_; }
    const std::string& localizedDescription() const { return localizedDescription_; }

    /// Domain, code and description together, as a developer wants them in a log.
    const std::string& debugDescription() const { return debugDescription_; }

    const char* what() const noexcept override { return localizedDescription_.c_str(); }

private:
    std::string domain_;
    std::int64_t code_;
    std::string localizedDescription_;
    std::string debugDescription_;
};

/// The error of a failed C library call on `subject` (a path, say), from its errno value.
Error posixError(int errorNumber, const std::string& subject);

/// The meaning of an errno value. Linux: in English, with the value's name, such as "No such file or
/// directory (ENOENT)", whatever the desktop's language, so that logs can be searched. macOS: in the system's
/// words.
std::string errorNumberDescription(int errorNumber);

/// The platform's wording for an error that carries no description of its own.
std::string genericErrorDescription(const std::string& domain, std::int64_t code);

/// How the platform prints an error with these values for developers. macOS: as an NSError prints itself,
/// with its user information.
std::string debugDescriptionOf(const std::string& domain, std::int64_t code,
                               const std::string& localizedDescription);

} // namespace orvane::platform
